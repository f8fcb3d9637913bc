#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string_view>
#include <vector>

namespace velox::console
{

/// Replaces a file's content whole or not at all: the bytes are written to a file beside it, which then takes its name. On
/// failure and after Ctrl-C the file is as it was, and nothing else is left.
/// @throws CommandFailure WriteFailed, or Interrupted
void WriteWhole(const std::filesystem::path& file, std::span<const uint8_t> bytes);
void WriteWhole(const std::filesystem::path& file, std::string_view text);

/// @throws CommandFailure BadInput
std::vector<uint8_t> ReadWhole(const std::filesystem::path& file);

} // namespace velox::console

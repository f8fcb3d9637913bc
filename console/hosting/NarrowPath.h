#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace velox::console
{

/// A path as the library takes it, in the process's narrow code page; nothing when that lacks a letter.
std::optional<std::string> NarrowPath(const std::filesystem::path& path);

} // namespace velox::console

#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace velox::console
{

/// File names are UTF-8 in texts, documents and on the command line, and paths only where a file is opened.
std::filesystem::path PathFromUtf8(std::string_view text);
std::string Utf8(const std::filesystem::path& path);

} // namespace velox::console

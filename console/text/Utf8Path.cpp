#include "console/text/Utf8Path.h"

namespace velox::console
{

std::filesystem::path PathFromUtf8(std::string_view text)
{
    return std::u8string(text.begin(), text.end());
}

std::string Utf8(const std::filesystem::path& path)
{
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

} // namespace velox::console

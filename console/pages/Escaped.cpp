#include "console/pages/Escaped.h"

#include <utf8.h>

namespace velox::console
{

namespace
{

constexpr const char* Replacement = "\xEF\xBF\xBD";

bool IsControl(char character)
{
    const auto code = static_cast<unsigned char>(character);
    return (code < 0x20 && character != '\n' && character != '\t') || code == 0x7F;
}

} // namespace

std::string Escaped(const std::string& text)
{
    std::string escaped;
    for (const char character : utf8::replace_invalid(text))
    {
        switch (character)
        {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        default:
            escaped += IsControl(character) ? Replacement : std::string(1, character);
        }
    }
    return escaped;
}

} // namespace velox::console

#include "console/pages/Markup.h"

#include <fmt/format.h>

#include <algorithm>

namespace velox::console
{

namespace
{

constexpr std::string_view Replacement = "\xEF\xBF\xBD";

/// Length of the UTF-8 character that the text begins with; 0 when it begins with none.
std::size_t CharacterLength(std::string_view text)
{
    const auto first = static_cast<unsigned char>(text[0]);
    const std::size_t length = first < 0x80 ? 1 : first >= 0xC2 && first < 0xE0 ? 2 : first >= 0xE0 && first < 0xF0 ? 3 : 4;
    const auto continues = [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
    };
    const bool wrongStart = (first >= 0x80 && first < 0xC2) || first > 0xF4;
    if (wrongStart || text.size() < length || !std::ranges::all_of(text.substr(1, length - 1), continues))
    {
        return 0;
    }
    const auto second = length > 1 ? static_cast<unsigned char>(text[1]) : 0U;
    const bool overlong = (first == 0xE0 && second < 0xA0U) || (first == 0xF0 && second < 0x90U);
    const bool noCharacter = (first == 0xED && second > 0x9FU) || (first == 0xF4 && second > 0x8FU);
    return overlong || noCharacter ? 0 : length;
}

bool IsControl(char character)
{
    const auto code = static_cast<unsigned char>(character);
    return (code < 0x20 && character != '\n' && character != '\t') || code == 0x7F;
}

std::string_view Entity(char character)
{
    switch (character)
    {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '"':
        return "&quot;";
    default:
        return {};
    }
}

} // namespace

std::string Escaped(std::string_view text)
{
    std::string escaped;
    while (!text.empty())
    {
        const std::size_t length = CharacterLength(text);
        const std::string_view entity = Entity(text[0]);
        if (length == 0 || IsControl(text[0]))
        {
            escaped += Replacement;
        }
        else
        {
            escaped += entity.empty() ? text.substr(0, length) : entity;
        }
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return escaped;
}

std::string Element(std::string_view name, std::string_view attributes, std::string_view content)
{
    return fmt::format("<{0}{1}{2}>{3}</{0}>\n", name, attributes.empty() ? "" : " ", attributes, content);
}

std::string TextElement(std::string_view name, std::string_view classes, std::string_view text)
{
    return Element(name, classes.empty() ? "" : fmt::format("class=\"{}\"", classes), Escaped(text));
}

} // namespace velox::console

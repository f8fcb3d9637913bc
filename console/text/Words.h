#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace velox::console
{

/// What stands between words: blanks, tabs, ends of lines.
inline constexpr std::string_view Blanks = " \t\r\n\v\f";

/// Without the blanks at its ends.
std::string_view Trim(std::string_view text);

/// Whether two words differ in nothing but capitals, ASCII's.
bool SameLetters(std::string_view left, std::string_view right);

/// The line, counted from 1, in which the text's character stands.
int LineAt(std::string_view text, std::size_t position);

/// The bytes of a file as text.
std::string_view AsText(std::span<const uint8_t> bytes);

} // namespace velox::console

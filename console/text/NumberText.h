#pragma once

#include <string>
#include <string_view>

namespace velox::console
{

/// A number in an attribute, which the library reads as sscanf does: what it makes of it differs from what one would think.
struct NumberText
{
    bool isNumber = false; ///< what the library sees
    bool negative = false;
    bool hexadecimal = false;
    bool tooLarge = false; ///< beyond 32 bits: the value depends on the C runtime
    std::string rest;      ///< ignored, without blanks at its ends
};

/// @param text  the attribute's value
NumberText ReadNumberText(std::string_view text);

} // namespace velox::console

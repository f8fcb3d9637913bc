#include "console/text/NumberText.h"

#include "console/text/Words.h"

#include <charconv>
#include <cstdint>
#include <limits>

namespace velox::console
{

NumberText ReadNumberText(std::string_view text)
{
    NumberText number;
    text = Trim(text);
    if (text.starts_with('-') || text.starts_with('+'))
    {
        number.negative = text.front() == '-';
        text.remove_prefix(1);
    }
    else if (text.starts_with("0x") || text.starts_with("0X"))
    {
        number.hexadecimal = true;
        text.remove_prefix(2);
    }
    uint64_t value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value, number.hexadecimal ? 16 : 10);
    number.isNumber = error != std::errc::invalid_argument;
    number.tooLarge = error == std::errc::result_out_of_range || value > std::numeric_limits<uint32_t>::max();
    number.rest = Trim({stop, static_cast<std::size_t>(end - stop)});
    return number;
}

} // namespace velox::console

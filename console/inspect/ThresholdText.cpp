#include "console/inspect/ThresholdText.h"

#include "console/text/Words.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <limits>
#include <locale>
#include <sstream>

namespace velox::console
{

namespace
{

using Limits = std::numeric_limits<int32_t>;
constexpr double Q8Scale = 256.0;

/// As the library does it: half away from zero; what does not fit becomes the nearest that does.
int32_t ToQ8(double value)
{
    const double scaled = value * Q8Scale + (value > 0.0 ? 0.5 : -0.5);
    return scaled >= Limits::max() ? Limits::max() : scaled <= Limits::min() ? Limits::min() : static_cast<int32_t>(scaled);
}

std::string WhyNoNumber(std::string_view content)
{
    const bool utf16 = content.starts_with("\xFF\xFE") || content.starts_with("\xFE\xFF") || content.find('\0') != content.npos;
    return Trim(content).empty()                 ? "the file holds no number: it is empty"
           : content.starts_with("\xEF\xBB\xBF") ? "the file holds no number at its beginning: an invisible byte order mark "
                                                   "(EF BB BF) stands before it"
           : utf16                               ? "the file holds no number that can be read: it is written in UTF-16"
           : Trim(content).front() == ','        ? "the file begins with a comma, which ends the number before it has begun"
                                                 : "the file does not begin with a number";
}

std::string WhatIsWrong(const ThresholdText& read)
{
    if (read.saturated)
    {
        return fmt::format("{} is more than 32 bits hold; the library takes {:.6g}", read.text, read.q8 / Q8Scale);
    }
    const bool comma = read.rest.size() > 1 && read.rest[0] == ',' && std::isdigit(static_cast<unsigned char>(read.rest[1])) != 0;
    return read.rest.empty() ? ""
           : comma           ? fmt::format("the decimal comma in \"{0}{1}\" ends the number: only {0} counts", read.text,
                                           read.rest.substr(0, read.rest.find_first_not_of("0123456789", 1)))
                             : fmt::format("what follows the number {} is ignored", read.text);
}

} // namespace

ThresholdText ReadThresholdText(std::string_view content)
{
    ThresholdText read;
    std::istringstream stream{std::string(content)};
    stream.imbue(std::locale::classic());
    stream >> read.value;
    read.isNumber = !stream.fail() || std::abs(read.value) == std::numeric_limits<double>::max();
    read.offset = std::min(content.find_first_not_of(Blanks), content.size());
    if (!read.isNumber)
    {
        read.value = 0.0;
        read.whatIsWrong = WhyNoNumber(content);
        return read;
    }
    const auto end = static_cast<std::size_t>(stream.rdbuf()->pubseekoff(0, std::ios::cur, std::ios::in));
    read.q8 = ToQ8(read.value);
    read.saturated = std::abs(read.value * Q8Scale) > static_cast<double>(Limits::max());
    read.text = content.substr(read.offset, end - read.offset);
    read.rest = Trim(content.substr(end));
    read.restOffset = std::min(content.find_first_not_of(Blanks, end), content.size());
    read.whatIsWrong = WhatIsWrong(read);
    return read;
}

std::string Q8Text(int32_t q8)
{
    return fmt::format("{} ({:.6g})", q8, q8 / Q8Scale);
}

} // namespace velox::console

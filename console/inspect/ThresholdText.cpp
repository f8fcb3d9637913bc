#include "console/inspect/ThresholdText.h"

#include "console/text/Words.h"

#include <fmt/format.h>

#include <cctype>
#include <cmath>
#include <limits>
#include <locale>
#include <sstream>

namespace velox::console
{

namespace
{

constexpr double Q8Scale = 256.0;
constexpr std::string_view WriteANumber = "Write one decimal number with a point, such as 0.75, as plain text.";

/// As the library does it: half away from zero; what does not fit becomes the nearest that does.
int32_t ToQ8(double value)
{
    using Limits = std::numeric_limits<int32_t>;
    const double scaled = value * Q8Scale + (value > 0.0 ? 0.5 : -0.5);
    return scaled >= Limits::max() ? Limits::max() : scaled <= Limits::min() ? Limits::min() : static_cast<int32_t>(scaled);
}

std::string WhyNoNumber(std::string_view content)
{
    if (Trim(content).empty())
    {
        return "The file holds no number: it is empty.";
    }
    if (content.starts_with("\xEF\xBB\xBF"))
    {
        return "The file holds no number at its beginning: an invisible byte order mark (EF BB BF) stands before it.";
    }
    if (content.starts_with("\xFF\xFE") || content.starts_with("\xFE\xFF") || content.find('\0') != std::string_view::npos)
    {
        return "The file holds no number that can be read: it is written in UTF-16.";
    }
    if (Trim(content).front() == ',')
    {
        return "The file begins with a comma, which ends the number before it has begun.";
    }
    return "The file does not begin with a number.";
}

std::string WhyRest(const ThresholdText& read)
{
    const bool digitFollows = read.rest.size() > 1 && std::isdigit(static_cast<unsigned char>(read.rest[1])) != 0;
    if (read.rest.front() == ',' && digitFollows)
    {
        return fmt::format("The decimal comma in \"{0}{1}\" ends the number: only {0} counts.", read.text, read.rest);
    }
    return fmt::format("What follows the number {} is ignored.", read.text);
}

} // namespace

ThresholdText ReadThresholdText(std::string_view content)
{
    ThresholdText read;
    std::istringstream stream{std::string(content)};
    stream.imbue(std::locale::classic());
    stream >> read.value;
    const bool overflow = stream.fail() && std::abs(read.value) == std::numeric_limits<double>::max();
    read.isNumber = !stream.fail() || overflow;

    const auto end = static_cast<std::size_t>(stream.rdbuf()->pubseekoff(0, std::ios::cur, std::ios::in));
    const std::size_t first = content.find_first_not_of(Blanks);
    read.offset = first == std::string_view::npos ? content.size() : first;
    if (!read.isNumber)
    {
        read.value = 0.0;
        read.whatIsWrong = WhyNoNumber(content);
        read.fix = WriteANumber;
        return read;
    }

    read.q8 = ToQ8(read.value);
    read.saturated = std::abs(read.value * Q8Scale) > static_cast<double>(std::numeric_limits<int32_t>::max());
    read.text = content.substr(read.offset, end - read.offset);
    read.rest = Trim(content.substr(end));
    read.restOffset = read.rest.empty() ? content.size() : content.find_first_not_of(Blanks, end);
    if (read.saturated)
    {
        read.whatIsWrong = fmt::format("{} is more than 32 bits hold; the library takes {:.6g}.", read.text,
                                       static_cast<double>(read.q8) / Q8Scale);
        read.fix = WriteANumber;
    }
    else if (!read.rest.empty())
    {
        read.whatIsWrong = WhyRest(read);
        read.fix = WriteANumber;
    }
    return read;
}

std::string Q8Text(int32_t q8)
{
    return fmt::format("{} ({:.6g})", q8, static_cast<double>(q8) / Q8Scale);
}

} // namespace velox::console

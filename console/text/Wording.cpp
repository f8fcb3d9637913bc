#include "console/text/Wording.h"

#include <fmt/format.h>

#include <cmath>
#include <cstdint>

namespace velox::console
{

std::string Counted(std::size_t number, std::string_view one, std::string_view many)
{
    const bool plural = number != 1;
    return fmt::format("{} {}{}", number, plural && !many.empty() ? many : one, plural && many.empty() ? "s" : "");
}

std::string ClockText(double seconds, int decimals)
{
    const auto scale = static_cast<int64_t>(std::pow(10.0, decimals));
    const int64_t units = std::llround(seconds * static_cast<double>(scale));
    const int64_t minutes = units / (60 * scale);
    const double rest = static_cast<double>(units % (60 * scale)) / static_cast<double>(scale);
    const int width = decimals == 0 ? 2 : 3 + decimals;
    return minutes < 60 ? fmt::format("{}:{:0{}.{}f}", minutes, rest, width, decimals)
                        : fmt::format("{}:{:02}:{:0{}.{}f}", minutes / 60, minutes % 60, rest, width, decimals);
}

std::string PlaceText(double begin, double end)
{
    const auto text = [end](double second) {
        return end < 60.0 ? fmt::format("{:.2f} s", second) : ClockText(second, 1);
    };
    return end > begin ? text(begin) + " to " + text(end) : text(begin);
}

std::string DurationText(double seconds)
{
    return seconds < 360.0 ? fmt::format("{:.1f} s", seconds) : fmt::format("{:.2f} h", seconds / 3600.0);
}

std::string Joined(std::span<const std::string> words)
{
    return fmt::format("{}", fmt::join(words, ", "));
}

} // namespace velox::console

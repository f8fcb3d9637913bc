#include "console/audio/LevelMeter.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace velox::console
{

void LevelMeter::Hear(std::span<const float> samples)
{
    for (const float sample : samples)
    {
        energy += static_cast<double>(sample) * static_cast<double>(sample);
    }
    count += samples.size();
}

std::string LevelMeter::Text()
{
    constexpr double Least = -60.0;
    constexpr int BarWidth = 20;
    const double power = count > 0 ? energy / static_cast<double>(count) : 0.0;
    const double level = power > 0.0 ? std::clamp(10.0 * std::log10(power), Least, 0.0) : Least;
    const auto full = static_cast<std::size_t>(std::lround((1.0 - level / Least) * BarWidth));
    energy = 0.0;
    count = 0;
    return fmt::format("{:3.0f} dB [{:<{}}]", level, std::string(full, '#'), BarWidth);
}

} // namespace velox::console

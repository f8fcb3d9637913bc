#include "engine/sound/SpeechLevel.h"

#include "engine/base/AudioFormat.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <vector>

namespace velox::engine
{

namespace
{

/// How far below the level a frame is a pause, as a ratio of powers: 15.9 dB.
constexpr double Margin = 38.9;

double Power(std::span<const float> samples)
{
    double energy = 0.0;
    for (const float sample : samples)
    {
        energy += static_cast<double>(sample) * static_cast<double>(sample);
    }
    return energy / static_cast<double>(std::max<std::size_t>(samples.size(), 1));
}

std::vector<double> FramePowers(std::span<const float> samples)
{
    std::vector<double> powers;
    for (std::size_t start = 0; start + FrameSize <= samples.size(); start += FrameSize)
    {
        powers.push_back(Power(samples.subspan(start, FrameSize)));
    }
    if (powers.empty())
    {
        powers.push_back(Power(samples));
    }
    return powers;
}

/// The power that a tenth of a second reaches, which no click does.
double LoudestPower(std::vector<double> powers)
{
    constexpr std::size_t LoudFrames = 10;
    const auto rank = static_cast<std::ptrdiff_t>(std::min(LoudFrames, powers.size()) - 1);
    std::nth_element(powers.begin(), powers.begin() + rank, powers.end(), std::greater<>());
    return powers[static_cast<std::size_t>(rank)];
}

double MeanFrom(double threshold, const std::vector<double>& powers)
{
    double sum = 0.0;
    double count = 0.0;
    for (const double power : powers)
    {
        sum += power >= threshold ? power : 0.0;
        count += power >= threshold ? 1.0 : 0.0;
    }
    return sum / count;
}

} // namespace

double SpeechLevel(std::span<const float> samples)
{
    const std::vector<double> powers = FramePowers(samples);
    double former = LoudestPower(powers);
    double level = MeanFrom(former / Margin, powers);
    while (level < former) // it falls as softer frames come in, and there are but so many
    {
        former = level;
        level = MeanFrom(former / Margin, powers);
    }
    return std::sqrt(level);
}

} // namespace velox::engine

#include "engine/sound/MelFilterbank.h"

#include <algorithm>
#include <cmath>

namespace velox::engine
{

namespace
{

constexpr double LowestFrequency = 80.0;
constexpr double HighestFrequency = 7200.0;
/// Added to an energy before its logarithm: less than what the rounding to 16 bits leaves; samples lie in [-1, 1].
constexpr float EnergyFloor = 1e-9F;

double ToMel(double frequency)
{
    return 1127.0 * std::log1p(frequency / 700.0);
}

double ToFrequency(double mel)
{
    return 700.0 * std::expm1(mel / 1127.0);
}

/// Multiplies frequencies by the warp up to a bend, and from there on brings them back to the band's upper end.
double WarpFrequency(double frequency, double warp)
{
    constexpr double BendShare = 0.8; // of the band's upper end: the higher of the bend's two frequencies
    const double bend = BendShare * HighestFrequency / std::max(1.0, warp);
    if (frequency <= bend)
    {
        return warp * frequency;
    }
    const double slope = (HighestFrequency - warp * bend) / (HighestFrequency - bend);
    return HighestFrequency - slope * (HighestFrequency - frequency);
}

} // namespace

MelFilterbank::MelFilterbank(double warp)
{
    const double lowest = ToMel(LowestFrequency);
    const double step = (ToMel(HighestFrequency) - lowest) / (MelChannels + 1);
    const auto edge = [&](std::size_t i) {
        return WarpFrequency(ToFrequency(lowest + step * static_cast<double>(i)), warp);
    };
    constexpr double BinWidth = static_cast<double>(SampleRate) / FftSize;
    constexpr std::size_t Bins = FftSize / 2 + 1;

    for (std::size_t channel = 0; channel < MelChannels; ++channel)
    {
        const double left = edge(channel);
        const double centre = edge(channel + 1);
        const double right = edge(channel + 2);
        centres[channel] = centre;
        Triangle& triangle = triangles[channel];
        triangle.firstBin = std::min(Bins, static_cast<std::size_t>(std::floor(left / BinWidth)) + 1);
        for (std::size_t bin = triangle.firstBin; bin < Bins && static_cast<double>(bin) * BinWidth < right; ++bin)
        {
            const double frequency = static_cast<double>(bin) * BinWidth;
            const double weight =
                frequency <= centre ? (frequency - left) / (centre - left) : (right - frequency) / (right - centre);
            triangle.weights.push_back(static_cast<float>(weight));
        }
    }
}

void MelFilterbank::Apply(const float* power, MelFrame* logMel) const
{
    for (std::size_t channel = 0; channel < MelChannels; ++channel)
    {
        const Triangle& triangle = triangles[channel];
        float energy = EnergyFloor;
        for (std::size_t i = 0; i < triangle.weights.size(); ++i)
        {
            energy += triangle.weights[i] * power[triangle.firstBin + i];
        }
        (*logMel)[channel] = std::log(energy);
    }
}

} // namespace velox::engine

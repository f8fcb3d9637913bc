#pragma once

#include "engine/base/RandomStream.h"
#include "engine/sound/FrontEnd.h"

#include <cmath>
#include <cstdint>
#include <numbers>
#include <span>
#include <vector>

/// Audio made for tests, and its measures.
namespace Signals
{

using velox::engine::SampleRate;

inline std::vector<float> Sine(double frequency, double amplitude, std::size_t count)
{
    std::vector<float> samples(count);
    for (std::size_t i = 0; i < count; ++i)
    {
        const double seconds = static_cast<double>(i) / static_cast<double>(SampleRate);
        samples[i] = static_cast<float>(amplitude * std::sin(2.0 * std::numbers::pi * frequency * seconds));
    }
    return samples;
}

/// White noise, evenly distributed up to the amplitude.
inline std::vector<float> Noise(double amplitude, std::size_t count, uint64_t seed)
{
    velox::engine::RandomStream random(seed);
    std::vector<float> samples(count);
    for (float& sample : samples)
    {
        sample = static_cast<float>(amplitude * (2.0 * random.Uniform() - 1.0));
    }
    return samples;
}

inline double RootMeanSquare(std::span<const float> samples)
{
    double energy = 0.0;
    for (const float sample : samples)
    {
        energy += static_cast<double>(sample) * static_cast<double>(sample);
    }
    return std::sqrt(energy / static_cast<double>(samples.size()));
}

inline double Decibels(double amplitudeRatio)
{
    return 20.0 * std::log10(amplitudeRatio);
}

/// Amplitude of a sinusoid within samples, by correlation; exact when they hold whole periods.
inline double AmplitudeAt(double frequency, std::span<const float> samples)
{
    double real = 0.0;
    double imaginary = 0.0;
    for (std::size_t i = 0; i < samples.size(); ++i)
    {
        const double phase = 2.0 * std::numbers::pi * frequency * static_cast<double>(i) / static_cast<double>(SampleRate);
        real += static_cast<double>(samples[i]) * std::cos(phase);
        imaginary += static_cast<double>(samples[i]) * std::sin(phase);
    }
    return 2.0 * std::hypot(real, imaginary) / static_cast<double>(samples.size());
}

inline std::vector<velox::engine::MelFrame> LogMel(std::span<const float> samples, double warp = 1.0)
{
    using velox::engine::FrameSize;
    velox::engine::FrontEnd frontEnd(warp);
    std::vector<velox::engine::MelFrame> frames;
    velox::engine::MelFrame frame{};
    for (std::size_t start = 0; start + FrameSize <= samples.size(); start += FrameSize)
    {
        if (frontEnd.Push(samples.data() + start, &frame))
        {
            frames.push_back(frame);
        }
    }
    return frames;
}

} // namespace Signals

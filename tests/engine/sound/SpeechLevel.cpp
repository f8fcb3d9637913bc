#include "engine/sound/SpeechLevel.h"

#include "tests/engine/support/Signals.h"

#include <gmock/gmock.h>

#include <numbers>

namespace SpeechLevelTests
{

using velox::engine::SampleRate;
using velox::engine::SpeechLevel;

constexpr double Amplitude = 0.2;
constexpr double SineLevel = Amplitude / std::numbers::sqrt2;

/// A second of a sine with so many seconds of quiet before and after it.
std::vector<float> SineInQuiet(double quiet, std::size_t seconds)
{
    std::vector<float> samples = Signals::Noise(quiet, seconds * SampleRate, 1);
    const std::vector<float> sine = Signals::Sine(500.0, Amplitude, SampleRate);
    samples.insert(samples.end(), sine.begin(), sine.end());
    const std::vector<float> after = Signals::Noise(quiet, seconds * SampleRate, 2);
    samples.insert(samples.end(), after.begin(), after.end());
    return samples;
}

TEST(SpeechLevel, OfASteadySoundIsItsRootMeanSquare)
{
    EXPECT_NEAR(SpeechLevel(Signals::Sine(500.0, Amplitude, SampleRate)), SineLevel, 1e-4);
}

TEST(SpeechLevel, QuietAroundASoundChangesNothing)
{
    for (const double quiet : {0.0, 0.001, 0.02})
    {
        SCOPED_TRACE(quiet);
        for (const std::size_t seconds : {1U, 10U})
        {
            EXPECT_NEAR(SpeechLevel(SineInQuiet(quiet, seconds)), SineLevel, 1e-3) << seconds;
        }
    }
}

TEST(SpeechLevel, SoundsTwelveDecibelsBelowTheLoudestCount)
{
    std::vector<float> samples = Signals::Sine(500.0, Amplitude, SampleRate);
    const std::vector<float> softer = Signals::Sine(500.0, Amplitude / 4.0, SampleRate);
    samples.insert(samples.end(), softer.begin(), softer.end());
    EXPECT_NEAR(SpeechLevel(samples), SineLevel * std::sqrt((1.0 + 1.0 / 16.0) / 2.0), 1e-4);
}

TEST(SpeechLevel, FollowsTheGain)
{
    std::vector<float> samples = SineInQuiet(0.01, 1);
    const double level = SpeechLevel(samples);
    for (float& sample : samples)
    {
        sample *= 0.01F;
    }
    EXPECT_NEAR(SpeechLevel(samples), 0.01 * level, 1e-6);
}

TEST(SpeechLevel, SilenceHasNone)
{
    EXPECT_EQ(SpeechLevel({}), 0.0);
    EXPECT_EQ(SpeechLevel(std::vector<float>(1000, 0.0F)), 0.0);
}

TEST(SpeechLevel, LessThanAFrameIsMeasuredAsItIs)
{
    EXPECT_NEAR(SpeechLevel(std::vector<float>(10, 0.5F)), 0.5, 1e-6);
}

} // namespace SpeechLevelTests

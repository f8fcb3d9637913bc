#include "evaluation/TimeStretch.h"

#include "tests/engine/support/Signals.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace TimeStretchTests
{

using velox::evaluation::ChangeTempo;

constexpr std::size_t Second = 16'000;

int Crossings(const std::vector<float>& samples, std::size_t begin, std::size_t count)
{
    int crossings = 0;
    for (std::size_t i = begin + 1; i < begin + count; ++i)
    {
        crossings += (samples[i - 1] < 0.0F) != (samples[i] < 0.0F) ? 1 : 0;
    }
    return crossings;
}

TEST(TimeStretch, TheLengthFollowsTheTempo)
{
    const std::vector<float> tone = Signals::Sine(440.0, 0.5, Second);
    for (const double tempo : {0.5, 0.8, 1.0, 1.3, 2.0})
    {
        EXPECT_NEAR(static_cast<double>(ChangeTempo(tone, tempo).size()), Second / tempo, 600.0 / tempo) << tempo;
    }
}

TEST(TimeStretch, ThePitchAndTheLevelStay)
{
    const std::vector<float> tone = Signals::Sine(440.0, 0.5, Second);
    for (const double tempo : {0.8, 1.3})
    {
        SCOPED_TRACE(tempo);
        const std::vector<float> changed = ChangeTempo(tone, tempo);
        EXPECT_NEAR(Crossings(changed, 1000, 8000), 440, 8); // twice 440 Hz in half a second
        const auto middle = changed.begin() + 1000;
        EXPECT_NEAR(*std::max_element(middle, middle + 8000), 0.5F, 0.05F);
    }
}

TEST(TimeStretch, AtItsOwnTempoARecordingStaysAsItIs)
{
    const std::vector<float> noise = Signals::Noise(0.5, Second, 1);
    const std::vector<float> same = ChangeTempo(noise, 1.0);
    for (std::size_t i = 240; i + 240 < same.size(); ++i)
    {
        ASSERT_NEAR(same[i], noise[i], 1e-5F) << i;
    }
}

TEST(TimeStretch, LessThanAWindowGivesNothing)
{
    EXPECT_TRUE(ChangeTempo(std::vector<float>(479, 1.0F), 1.3).empty());
    EXPECT_TRUE(ChangeTempo({}, 0.8).empty());
}

} // namespace TimeStretchTests

#include "engine/enrollment/SpeedChange.h"

#include "tests/engine/support/Signals.h"

#include <gmock/gmock.h>

namespace SpeedChangeTests
{

using namespace velox::engine;
using testing::IsEmpty;

/// The part away from both ends, in whole tenths of seconds.
std::span<const float> Middle(std::span<const float> samples)
{
    constexpr std::size_t Edge = 800;
    return samples.subspan(Edge, (samples.size() - 2 * Edge) / 1600 * 1600);
}

TEST(SpeedChange, TheLengthIsDividedByTheSpeed)
{
    EXPECT_EQ(ChangeSpeed(std::vector<float>(16000), 1.12).size(), 14285U);
    EXPECT_EQ(ChangeSpeed(std::vector<float>(16000), 0.8).size(), 20000U);
    EXPECT_THAT(ChangeSpeed({}, 0.9), IsEmpty());
}

TEST(SpeedChange, ASineRisesWithTheSpeedAndKeepsItsStrength)
{
    for (const double speed : {0.88, 0.93, 1.0, 1.07, 1.12})
    {
        for (const double frequency : {200.0, 1000.0, 5000.0})
        {
            SCOPED_TRACE(testing::Message() << frequency << " Hz at " << speed);
            const std::vector<float> changed = ChangeSpeed(Signals::Sine(frequency, 0.5, 32000), speed);
            double error = 0.0;
            const double step = 2.0 * std::numbers::pi * frequency * speed / static_cast<double>(SampleRate);
            for (std::size_t i = 800; i + 800 < changed.size(); ++i)
            {
                error =
                    std::max(error, std::abs(static_cast<double>(changed[i]) - 0.5 * std::sin(step * static_cast<double>(i))));
            }
            EXPECT_LT(error, 0.5 * 1e-3); // -60 dB
        }
    }
}

TEST(SpeedChange, WhatWouldFoldBackIsTakenOut)
{
    const std::vector<float> changed = ChangeSpeed(Signals::Sine(7900.0, 0.5, 32000), 1.12);
    EXPECT_LT(Signals::Decibels(Signals::RootMeanSquare(Middle(changed)) / 0.35), -30.0);
}

TEST(SpeedChange, AClickStaysInItsPlace)
{
    std::vector<float> click(4000, 0.0F);
    click[2200] = 1.0F;
    const std::vector<float> changed = ChangeSpeed(click, 1.1);
    EXPECT_EQ(std::max_element(changed.begin(), changed.end()) - changed.begin(), 2000);
}

} // namespace SpeedChangeTests

#include "engine/models/ScoreScale.h"

#include "engine/base/RandomStream.h"

#include <gmock/gmock.h>

#include <limits>
#include <vector>

namespace
{

using velox::engine::BackgroundTail;
using Scale = velox::engine::ScoreScale;

TEST(ScoreScale, HalfAFalseAlarmPerHourIsAHundred)
{
    EXPECT_FLOAT_EQ(Scale::FromAlarmsPerHour(0.5), 100.0F);
}

TEST(ScoreScale, TenStepsAreAFactorEOfTheRate)
{
    EXPECT_NEAR(Scale::FromAlarmsPerHour(0.5 / std::exp(1.0)), 110.0F, 1e-4F);
    EXPECT_NEAR(Scale::FromAlarmsPerHour(5.0), 100.0F - 23.02585F, 1e-4F);
}

/// A tenth of the two-second blocks is 180 an hour: 360 times the half, ln 360 = 5.88610.
TEST(ScoreScale, TheTailsStartIsWorthItsRate)
{
    EXPECT_DOUBLE_EQ(Scale::AlarmsAtTailStart, 180.0);
    EXPECT_NEAR(Scale::FromScore(1.5F, {1.5F}), 100.0F - 58.8610F, 1e-3F);
    EXPECT_NEAR(Scale::FromScore(1.5F + 5.88610F * 0.48F, {1.5F}), 100.0F, 1e-3F);
    EXPECT_NEAR(Scale::FromScore(1.5F, {1.5F}), Scale::FromAlarmsPerHour(180.0), 1e-3F);
}

TEST(ScoreScale, TheScaleEndsAtItsEnds)
{
    EXPECT_EQ(Scale::FromScore(-1000.0F, {0.0F}), 0.0F);
    EXPECT_EQ(Scale::FromScore(1000.0F, {0.0F}), 255.0F);
    EXPECT_EQ(Scale::Clamp(std::numeric_limits<float>::quiet_NaN()), 0.0F);
    EXPECT_EQ(Scale::Clamp(12.5F), 12.5F);
}

TEST(ScoreScale, TheTailStartsWhereATenthOfTheBlocksLiesAbove)
{
    std::vector<float> maxima;
    for (int i = 100; i > 0; --i)
    {
        maxima.push_back(static_cast<float>(i));
    }
    EXPECT_EQ(BackgroundTail::Fit(maxima).start, 90.0F);
    EXPECT_EQ(BackgroundTail::Fit({}).start, 0.0F);
}

/// Scores of an exponential distribution with the tail's slope: a tenth lies above slope * ln 10, and the scale then tells the
/// true rate.
TEST(ScoreScale, RatesOfAKnownDistributionComeOutRight)
{
    velox::engine::RandomStream random(3);
    std::vector<float> maxima(20000);
    for (float& maximum : maxima)
    {
        maximum = static_cast<float>(-static_cast<double>(BackgroundTail::Slope) * std::log(1.0 - random.Uniform()));
    }
    const BackgroundTail tail = BackgroundTail::Fit(maxima);
    EXPECT_NEAR(tail.start, 0.48F * std::log(10.0F), 0.03F);
    // The score that one block in a thousand surpasses: 1.8 an hour.
    EXPECT_NEAR(Scale::FromScore(0.48F * std::log(1000.0F), tail), Scale::FromAlarmsPerHour(1.8), 0.6F);
}

} // namespace

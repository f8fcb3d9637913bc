#include "engine/models/ScoreScale.h"

#include "engine/base/RandomStream.h"

#include <gmock/gmock.h>

#include <limits>
#include <vector>

namespace ScoreScaleTests
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

/// A twentieth of the two-second blocks is 90 an hour: 180 times the half, ln 180 = 5.19296.
TEST(ScoreScale, TheTailsStartIsWorthItsRate)
{
    EXPECT_DOUBLE_EQ(BackgroundTail::AlarmsAtStart, 90.0);
    const BackgroundTail tail{1.5F, 0.48F};
    EXPECT_NEAR(tail.FactorsBelowHalf(1.5F), -5.19296F, 1e-4F);
    EXPECT_NEAR(tail.FactorsBelowHalf(1.5F + 5.19296F * 0.48F), 0.0F, 1e-4F);
    EXPECT_NEAR(Scale::FromFactors(tail.FactorsBelowHalf(1.5F)), Scale::FromAlarmsPerHour(90.0), 1e-3F);
}

TEST(ScoreScale, TheScaleEndsAtItsEnds)
{
    EXPECT_EQ(Scale::FromFactors(-1000.0F), 0.0F);
    EXPECT_EQ(Scale::FromFactors(1000.0F), 255.0F);
    EXPECT_EQ(Scale::FromFactors(0.0F), 100.0F);
    EXPECT_EQ(Scale::Clamp(std::numeric_limits<float>::quiet_NaN()), 0.0F);
    EXPECT_EQ(Scale::Clamp(12.5F), 12.5F);
}

TEST(ScoreScale, TheTailStartsWhereATwentiethOfTheBlocksLiesAbove)
{
    std::vector<float> maxima;
    for (int i = 100; i > 0; --i)
    {
        maxima.push_back(static_cast<float>(i));
    }
    const BackgroundTail tail = BackgroundTail::Fit(maxima);
    EXPECT_EQ(tail.start, 95.0F);
    EXPECT_FLOAT_EQ(tail.slope, 3.0F / std::log(2.0F)); // 3 is the median of 1 to 5
}

TEST(ScoreScale, ATailOfFewOrEqualBlocksIsFitForUse)
{
    EXPECT_EQ(BackgroundTail::Fit({}).slope, 1.0F);
    std::vector<float> one{2.0F};
    EXPECT_EQ(BackgroundTail::Fit(one).start, 2.0F);
    EXPECT_EQ(BackgroundTail::Fit(one).slope, 1.0F);
    std::vector<float> alike(100, 2.0F);
    EXPECT_GT(BackgroundTail::Fit(alike).slope, 0.0F);
}

/// Scores of an exponential distribution: a twentieth lies above slope * ln 20, and the scale then tells the true rate.
TEST(ScoreScale, RatesOfAKnownDistributionComeOutRight)
{
    constexpr double Slope = 0.7;
    velox::engine::RandomStream random(3);
    std::vector<float> maxima(200000);
    for (float& maximum : maxima)
    {
        maximum = static_cast<float>(-Slope * std::log(1.0 - random.Uniform()));
    }
    const BackgroundTail tail = BackgroundTail::Fit(maxima);
    EXPECT_NEAR(tail.start, Slope * std::log(20.0), 0.03);
    EXPECT_NEAR(tail.slope, Slope, 0.03);
    // The score that one block in a thousand surpasses: 1.8 an hour.
    const auto seldom = static_cast<float>(Slope * std::log(1000.0));
    EXPECT_NEAR(Scale::FromFactors(tail.FactorsBelowHalf(seldom)), Scale::FromAlarmsPerHour(1.8), 1.5F);
}

} // namespace ScoreScaleTests

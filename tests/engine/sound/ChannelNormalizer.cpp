#include "engine/sound/ChannelNormalizer.h"

#include <gmock/gmock.h>

#include <cmath>

namespace
{

using namespace velox::engine;
using testing::Each;
using testing::FloatEq;
using testing::FloatNear;

constexpr float Speech = 2.0F; // above NoiseFloor::SpeechMargin
constexpr float Quiet = 1.0F;

MelFrame Constant(float value)
{
    MelFrame frame;
    frame.fill(value);
    return frame;
}

FeatureStatistics Statistics(float start, float mean, float deviation)
{
    return {Constant(start), Constant(mean), Constant(deviation)};
}

MelFrame Apply(ChannelNormalizer* normalizer, float level, float aboveFloor)
{
    MelFrame feature{};
    normalizer->Apply(Constant(level), aboveFloor, &feature);
    return feature;
}

TEST(ChannelNormalizer, QuietFramesLeaveTheMeanWhereItIs)
{
    ChannelNormalizer normalizer(Statistics(-5.0F, 0.5F, 2.0F));
    for (int i = 0; i < 3; ++i)
    {
        EXPECT_THAT(Apply(&normalizer, -8.0F, Quiet), Each(FloatEq((-8.0F + 5.0F - 0.5F) / 2.0F)));
    }
}

TEST(ChannelNormalizer, SpeechMovesTheMeanByItsShare)
{
    // Weight 50 at the start: the first frame counts 1/51 and the second 1/52.
    ChannelNormalizer normalizer(Statistics(0.0F, 0.0F, 1.0F));
    const float first = 51.0F / 51.0F;
    EXPECT_THAT(Apply(&normalizer, 51.0F, Speech), Each(FloatNear(51.0F - first, 1e-4F)));
    const float second = first + (51.0F - first) / 52.0F;
    EXPECT_THAT(Apply(&normalizer, 51.0F, Speech), Each(FloatNear(51.0F - second, 1e-4F)));
    EXPECT_THAT(Apply(&normalizer, 0.0F, Quiet), Each(FloatNear(-second, 1e-4F)));
}

TEST(ChannelNormalizer, ALevelExactlyAtTheMarginIsNotSpeech)
{
    ChannelNormalizer normalizer(Statistics(0.0F, 0.0F, 1.0F));
    EXPECT_THAT(Apply(&normalizer, 51.0F, NoiseFloor::SpeechMargin), Each(FloatEq(51.0F)));
}

TEST(ChannelNormalizer, EveryChannelHasItsOwnStatistics)
{
    FeatureStatistics statistics = Statistics(0.0F, 0.0F, 1.0F);
    statistics.startMean[3] = 1.0F;
    statistics.mean[4] = 2.0F;
    statistics.deviation[5] = 0.5F;
    ChannelNormalizer normalizer(statistics);
    const MelFrame feature = Apply(&normalizer, 4.0F, Quiet);
    EXPECT_FLOAT_EQ(feature[2], 4.0F);
    EXPECT_FLOAT_EQ(feature[3], 3.0F);
    EXPECT_FLOAT_EQ(feature[4], 2.0F);
    EXPECT_FLOAT_EQ(feature[5], 8.0F);
}

TEST(ChannelNormalizer, AStepOfTheSpeechLevelIsForgottenByA300thOfTheRestPerFrame)
{
    ChannelNormalizer normalizer(Statistics(0.0F, 0.0F, 1.0F));
    for (int i = 0; i < 300; ++i)
    {
        Apply(&normalizer, 0.0F, Speech); // the weight reaches its most, 300, after 250
    }
    float expected = 6.0F;
    for (int i = 0; i < 600; ++i)
    {
        expected *= 1.0F - 1.0F / 300.0F;
        ASSERT_THAT(Apply(&normalizer, 6.0F, Speech), Each(FloatNear(expected, 1e-3F))) << i;
    }
    EXPECT_NEAR(expected, 6.0 * std::exp(-2.0), 0.01);
}

TEST(ChannelNormalizer, TheFloorStartsAtTheFirstFrame)
{
    NoiseFloor floor;
    EXPECT_FLOAT_EQ(floor.Update(-9.0F), 0.0F);
    EXPECT_FLOAT_EQ(floor.Update(-9.0F), 0.0F);
}

TEST(ChannelNormalizer, TheFloorFallsByThreeTenthsOfTheGap)
{
    NoiseFloor floor;
    floor.Update(0.0F);
    EXPECT_NEAR(floor.Update(-10.0F), -7.0, 1e-5); // the floor is at -3 now
    EXPECT_NEAR(floor.Update(-10.0F), -4.9, 1e-5); // and at -5.1
    EXPECT_NEAR(floor.Update(-5.1F), 0.0, 1e-5);
}

TEST(ChannelNormalizer, TheFloorRisesSlowlyAndByAHundredthAtMost)
{
    NoiseFloor floor;
    floor.Update(-10.0F);
    EXPECT_NEAR(floor.Update(-9.0F), 1.0 - 0.002, 1e-5);
    EXPECT_NEAR(floor.Update(10.0F), 20.0 - 0.002 - 0.01, 1e-5);
    EXPECT_NEAR(floor.Update(10.0F), 20.0 - 0.002 - 0.02, 1e-5);
}

TEST(ChannelNormalizer, AfterASecondOfSpeechTheFloorIsNearlyWhereItWas)
{
    NoiseFloor floor;
    for (int i = 0; i < 50; ++i)
    {
        floor.Update(-10.0F);
    }
    float above = 0.0F;
    for (int i = 0; i < 100; ++i)
    {
        above = floor.Update(-2.0F);
    }
    EXPECT_NEAR(above, 7.0, 0.001); // it rose by 1 at most
    EXPECT_GT(above, NoiseFloor::SpeechMargin);
}

TEST(ChannelNormalizer, TheLevelIsTheMeanOfTheChannels)
{
    MelFrame frame = Constant(-2.0F);
    frame[7] = 38.0F;
    EXPECT_FLOAT_EQ(MeanLevel(frame), -1.0F);
}

} // namespace

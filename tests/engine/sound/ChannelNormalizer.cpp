#include "engine/sound/ChannelNormalizer.h"

#include <gmock/gmock.h>

#include <cmath>

namespace ChannelNormalizerTests
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

FeatureStatistics Statistics(float shape, float mean, float deviation)
{
    return {Constant(shape), Constant(mean), Constant(deviation)};
}

MelFrame Apply(ChannelNormalizer* normalizer, float level, float aboveFloor)
{
    MelFrame feature{};
    normalizer->Apply(Constant(level), aboveFloor, &feature);
    return feature;
}

TEST(ChannelNormalizer, BeforeSpeechTheMeanIsGuessedAboveTheFloor)
{
    // The floor is at -9, so the mean is guessed at -6.
    ChannelNormalizer normalizer(Statistics(0.5F, 0.5F, 2.0F));
    for (int i = 0; i < 3; ++i)
    {
        EXPECT_THAT(Apply(&normalizer, -8.0F, Quiet), Each(FloatEq((-8.0F + 6.0F - 0.5F - 0.5F) / 2.0F)));
    }
}

TEST(ChannelNormalizer, TheMeanOfFaintNoiseIsGuessedNoLowerThanThatOfFaintSpeech)
{
    ChannelNormalizer normalizer(Statistics(0.0F, 0.0F, 1.0F));
    EXPECT_THAT(Apply(&normalizer, -15.5F, 0.0F), Each(FloatEq(-15.5F - ChannelNormalizer::LeastMean)));
}

TEST(ChannelNormalizer, TheFirstSpeechLiesAtOnceAsFarAboveTheGuessAsPeaksDo)
{
    ChannelNormalizer normalizer(Statistics(0.0F, 0.0F, 1.0F));
    // The frame itself counts 1/51 of the mean.
    EXPECT_THAT(Apply(&normalizer, -3.0F, 10.0F), Each(FloatNear(ChannelNormalizer::PeakAboveMean * 50.0F / 51.0F, 1e-4F)));
}

TEST(ChannelNormalizer, SpeechThatFollowsDigitalSilenceIsNotTakenForAFloor)
{
    ChannelNormalizer normalizer(Statistics(0.0F, 0.0F, 1.0F));
    for (int i = 0; i < 50; ++i)
    {
        Apply(&normalizer, -20.7F, 0.0F);
    }
    for (int i = 0; i < 19; ++i)
    {
        EXPECT_THAT(Apply(&normalizer, -3.0F, 0.0F), Each(FloatNear(ChannelNormalizer::PeakAboveMean, 1e-4F))) << i;
    }
}

TEST(ChannelNormalizer, AClickIsForgottenWithinSomeFrames)
{
    ChannelNormalizer normalizer(Statistics(0.0F, 0.0F, 1.0F));
    Apply(&normalizer, -8.0F, Quiet);
    for (int i = 0; i < 3; ++i)
    {
        Apply(&normalizer, 2.0F, Quiet); // three windows see it
    }
    for (int i = 0; i < 15; ++i)
    {
        Apply(&normalizer, -8.0F, Quiet);
    }
    EXPECT_THAT(Apply(&normalizer, -8.0F, Quiet), Each(FloatEq(-2.0F)));
}

TEST(ChannelNormalizer, APeakThatLastsHoldsTheGuessUp)
{
    ChannelNormalizer normalizer(Statistics(0.0F, 0.0F, 1.0F));
    for (int i = 0; i < 4; ++i)
    {
        Apply(&normalizer, -2.0F, Quiet);
    }
    EXPECT_THAT(Apply(&normalizer, -9.0F, 0.0F), Each(FloatNear(-9.0F + 4.0F + 0.003F, 1e-4F)));
}

TEST(ChannelNormalizer, WhatLiesFarBelowTheMeanIsCutOff)
{
    ChannelNormalizer normalizer(Statistics(0.0F, 0.0F, 1.0F));
    MelFrame frame = Constant(-8.0F);
    frame[7] = -30.0F;
    MelFrame feature{};
    normalizer.Apply(frame, Quiet, &feature);
    EXPECT_FLOAT_EQ(feature[7], -ChannelNormalizer::Depth);
    EXPECT_LT(-ChannelNormalizer::Depth, feature[8]);
}

TEST(ChannelNormalizer, ALevelExactlyAtTheMarginIsNotSpeech)
{
    ChannelNormalizer normalizer(Statistics(0.0F, 0.0F, 1.0F));
    for (int i = 0; i < 50; ++i)
    {
        EXPECT_THAT(Apply(&normalizer, -3.0F, NoiseFloor::SpeechMargin),
                    Each(FloatEq(NoiseFloor::SpeechMargin - ChannelNormalizer::LeastRise)));
    }
}

TEST(ChannelNormalizer, EveryChannelHasItsOwnStatistics)
{
    FeatureStatistics statistics = Statistics(0.0F, 0.0F, 1.0F);
    statistics.startShape[3] = 1.0F;
    statistics.mean[4] = 2.0F;
    statistics.deviation[5] = 0.5F;
    ChannelNormalizer normalizer(statistics);
    const MelFrame feature = Apply(&normalizer, -4.0F, Quiet); // the mean is guessed at -2
    EXPECT_FLOAT_EQ(feature[2], -2.0F);
    EXPECT_FLOAT_EQ(feature[3], -3.0F);
    EXPECT_FLOAT_EQ(feature[4], -4.0F);
    EXPECT_FLOAT_EQ(feature[5], -4.0F);
}

TEST(ChannelNormalizer, SpeechTakesTheMeanOver)
{
    // The third channel is 1.5 louder in speech than the shape has it; 50 of 250 parts are still the guess's after 200 frames.
    ChannelNormalizer normalizer(Statistics(0.0F, 0.0F, 1.0F));
    MelFrame speech = Constant(-3.0F);
    speech[3] = -1.5F;
    MelFrame feature{};
    for (int i = 0; i < 200; ++i)
    {
        normalizer.Apply(speech, Speech, &feature);
    }
    EXPECT_NEAR(feature[3] - feature[4], 1.5 * 50.0 / 250.0, 1e-3);
}

TEST(ChannelNormalizer, AStepOfTheSpeechLevelIsForgottenByA300thOfTheRestPerFrame)
{
    ChannelNormalizer normalizer(Statistics(0.0F, 0.0F, 1.0F));
    for (int i = 0; i < 3000; ++i)
    {
        Apply(&normalizer, -4.0F, Speech); // the weight reaches its most, 300, after 250
    }
    float expected = 3.0F;
    for (int i = 0; i < 600; ++i)
    {
        expected *= 1.0F - 1.0F / 300.0F;
        ASSERT_THAT(Apply(&normalizer, -1.0F, Speech), Each(FloatNear(expected, 1e-2F))) << i;
    }
    EXPECT_NEAR(expected, 3.0 * std::exp(-2.0), 0.01);
}

TEST(ChannelNormalizer, HissThatWasTakenForSpeechIsForgottenOnceSpeechComes)
{
    FeatureStatistics statistics = Statistics(0.0F, 0.0F, 1.0F);
    ChannelNormalizer afterHiss(statistics);
    ChannelNormalizer afterNothing(statistics);
    MelFrame hiss = Constant(-10.0F);
    hiss[39] = -4.0F;
    MelFrame feature{};
    for (int i = 0; i < 200; ++i)
    {
        afterHiss.Apply(hiss, Speech, &feature); // after digital silence the floor lies far below
    }
    for (int i = 0; i < 20; ++i)
    {
        EXPECT_NEAR(Apply(&afterHiss, -3.0F, 10.0F)[39], Apply(&afterNothing, -3.0F, 10.0F)[39], i < 3 ? 10.0 : 0.2) << i;
    }
}

TEST(ChannelNormalizer, HissFarBelowTheSpeechBeforeMovesNothing)
{
    ChannelNormalizer normalizer(Statistics(0.0F, 0.0F, 1.0F));
    for (int i = 0; i < 100; ++i)
    {
        Apply(&normalizer, -3.0F, 10.0F);
    }
    MelFrame hiss = Constant(-10.0F);
    hiss[39] = -6.0F;
    MelFrame feature{};
    const float before = Apply(&normalizer, -3.0F, 10.0F)[39];
    for (int i = 0; i < 100; ++i)
    {
        normalizer.Apply(hiss, Speech, &feature);
    }
    EXPECT_NEAR(Apply(&normalizer, -3.0F, 10.0F)[39], before, 0.1);
}

/// A floor that has settled.
NoiseFloor FloorAt(float level)
{
    NoiseFloor floor;
    for (int i = 0; i < 3; ++i)
    {
        floor.Update(level);
    }
    return floor;
}

TEST(ChannelNormalizer, TheFloorStartsWithTheFirstFrames)
{
    NoiseFloor floor;
    EXPECT_FLOAT_EQ(floor.Update(-12.0F), 0.0F); // a window that is partly empty
    EXPECT_FLOAT_EQ(floor.Update(-9.5F), 0.0F);
    EXPECT_FLOAT_EQ(floor.Update(-9.0F), 0.0F);
    EXPECT_FLOAT_EQ(floor.Update(-9.0F), 0.0F);
}

TEST(ChannelNormalizer, DigitalSilenceLeavesTheFloorWhereItIs)
{
    NoiseFloor atStart;
    NoiseFloor later = FloorAt(-9.0F);
    for (int i = 0; i < 100; ++i)
    {
        EXPECT_FLOAT_EQ(atStart.Update(-20.7F), 0.0F);
        EXPECT_FLOAT_EQ(later.Update(-20.7F), 0.0F);
    }
    EXPECT_FLOAT_EQ(atStart.Update(-9.0F), 0.0F);
    EXPECT_FLOAT_EQ(later.Update(-9.0F), 0.0F);
}

TEST(ChannelNormalizer, TheFloorFallsByThreeTenthsOfTheGap)
{
    NoiseFloor floor = FloorAt(0.0F);
    EXPECT_NEAR(floor.Update(-10.0F), -7.0, 1e-5); // the floor is at -3 now
    EXPECT_NEAR(floor.Update(-10.0F), -4.9, 1e-5); // and at -5.1
    EXPECT_NEAR(floor.Update(-5.1F), 0.0, 1e-5);
}

TEST(ChannelNormalizer, TheFloorRisesSlowlyAndByAHundredthAtMost)
{
    NoiseFloor floor = FloorAt(-10.0F);
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

} // namespace ChannelNormalizerTests

#include "engine/training/PaddedSequence.h"

#include <gmock/gmock.h>

namespace PaddedSequenceTests
{

using velox::engine::TrainingSequence;
using Padded = velox::engine::PaddedSequence;

constexpr int Background = 2;

/// One channel, in which each frame holds its number plus one.
TrainingSequence Sequence(std::vector<int> labels)
{
    const auto frames = static_cast<Eigen::Index>(labels.size());
    return {Eigen::RowVectorXf::LinSpaced(frames, 1.0F, static_cast<float>(frames)), std::move(labels), 1.0F, true};
}

std::vector<float> Frames(const Padded& sequence, Eigen::Index first, Eigen::Index count)
{
    Eigen::MatrixXf features(1, count);
    sequence.Copy(first, &features);
    return {features.reshaped().begin(), features.reshaped().end()};
}

TEST(PaddedSequence, FindsThePhraseBetweenItsOuterStates)
{
    const TrainingSequence sequence = Sequence({2, 2, 0, 2, 1, 2});
    const Padded padded(sequence, Background);
    EXPECT_TRUE(padded.HasPhrase());
    EXPECT_EQ(padded.PhraseBegin(), 2);
    EXPECT_EQ(padded.PhraseEnd(), 5);
}

TEST(PaddedSequence, BackgroundAloneHasNoPhrase)
{
    const TrainingSequence sequence = Sequence({2, 2, 2});
    EXPECT_FALSE(Padded(sequence, Background).HasPhrase());
}

TEST(PaddedSequence, GivesItsOwnFramesInside)
{
    const TrainingSequence sequence = Sequence({2, 0, 1, 2});
    EXPECT_THAT(Frames(Padded(sequence, Background), 1, 3), testing::ElementsAre(2.0F, 3.0F, 4.0F));
}

TEST(PaddedSequence, RepeatsTheBackgroundAtItsEndsThereAndBack)
{
    const TrainingSequence sequence = Sequence({2, 2, 0, 1, 2, 2, 2});
    EXPECT_THAT(Frames(Padded(sequence, Background), -5, 6), testing::ElementsAre(1.0F, 1.0F, 2.0F, 2.0F, 1.0F, 1.0F));
    EXPECT_THAT(Frames(Padded(sequence, Background), 6, 8), testing::ElementsAre(7.0F, 7.0F, 6.0F, 5.0F, 5.0F, 6.0F, 7.0F, 7.0F));
}

TEST(PaddedSequence, BackgroundAloneIsRepeatedAsAWhole)
{
    const TrainingSequence sequence = Sequence({2, 2, 2});
    EXPECT_THAT(Frames(Padded(sequence, Background), -4, 11),
                testing::ElementsAre(3.0F, 3.0F, 2.0F, 1.0F, 1.0F, 2.0F, 3.0F, 3.0F, 2.0F, 1.0F, 1.0F));
}

TEST(PaddedSequence, ZerosFollowWhereItEndsWithinThePhrase)
{
    const TrainingSequence sequence = Sequence({0, 1});
    EXPECT_THAT(Frames(Padded(sequence, Background), -2, 6), testing::ElementsAre(0.0F, 0.0F, 1.0F, 2.0F, 0.0F, 0.0F));
}

TEST(PaddedSequence, FramesOutsideAreLabelledBackground)
{
    const TrainingSequence sequence = Sequence({0, 1});
    const Padded padded(sequence, Background);
    std::vector<int> labels;
    for (Eigen::Index frame = -2; frame < 4; ++frame)
    {
        labels.push_back(padded.Label(frame));
    }
    EXPECT_THAT(labels, testing::ElementsAre(2, 2, 0, 1, 2, 2));
}

} // namespace PaddedSequenceTests

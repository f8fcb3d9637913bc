#include "engine/enrollment/Alignment.h"

#include "engine/base/RandomStream.h"
#include "engine/sound/Cepstrum.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace AlignmentTests
{

using namespace velox::engine;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// A sound: its spectral envelope is a cosine of this number, with noise that hides how far a change reaches in the deltas.
MelFrame Sound(int number, RandomStream* random)
{
    MelFrame frame{};
    for (std::size_t n = 0; n < MelChannels; ++n)
    {
        const double phase = std::numbers::pi * number * (static_cast<double>(n) + 0.5) / MelChannels;
        frame[n] = static_cast<float>(std::cos(phase) + 0.35 * random->Normal());
    }
    return frame;
}

/// Sounds 1, 2, 3 and so on, each for as many frames as given.
std::vector<MelFrame> Take(const std::vector<int>& durations, uint64_t seed)
{
    RandomStream random(seed);
    std::vector<MelFrame> take;
    for (std::size_t s = 0; s < durations.size(); ++s)
    {
        for (int i = 0; i < durations[s]; ++i)
        {
            take.push_back(Sound(static_cast<int>(s) + 1, &random));
        }
    }
    return take;
}

std::vector<int> LabelsOf(const std::vector<int>& durations)
{
    std::vector<int> labels;
    for (std::size_t s = 0; s < durations.size(); ++s)
    {
        labels.insert(labels.end(), static_cast<std::size_t>(durations[s]), static_cast<int>(s));
    }
    return labels;
}

GaussianMixture MixtureOf(const std::vector<std::vector<MelFrame>>& takes)
{
    Eigen::MatrixXf frames(CepstralFrameSize, 0);
    for (const std::vector<MelFrame>& take : takes)
    {
        const Eigen::MatrixXf cepstra = UtteranceCepstra(take);
        frames.conservativeResize(Eigen::NoChange, frames.cols() + cepstra.cols());
        frames.rightCols(cepstra.cols()) = cepstra;
    }
    MixtureTraining training;
    training.components = 4;
    return TrainMixture(frames, training);
}

/// Frames by which a state begins early or late, at most.
std::ptrdiff_t LargestShift(const std::vector<int>& labels, const std::vector<int>& expected)
{
    std::ptrdiff_t largest = 0;
    for (int state = 1; state <= expected.back(); ++state)
    {
        const auto begin = std::lower_bound(labels.begin(), labels.end(), state) - labels.begin();
        const auto expectedBegin = std::lower_bound(expected.begin(), expected.end(), state) - expected.begin();
        largest = std::max(largest, std::abs(begin - expectedBegin));
    }
    return largest;
}

TEST(Alignment, AStateForEveryFiveFramesOfTheMedianTake)
{
    EXPECT_EQ(StateCount({85}), 17U);
    EXPECT_EQ(StateCount({200, 89, 10}), 17U);
    EXPECT_EQ(StateCount({3}), 1U);
}

TEST(Alignment, TakesOfUnequalLengthsAreCutWhereTheirSoundsChange)
{
    std::vector<std::vector<int>> durations;
    for (int i = 0; i < 20; ++i)
    {
        durations.push_back({12, 12, 12, 12});
        durations.push_back({10, 16, 12, 20});
        durations.push_back({16, 10, 14, 8});
    }
    std::vector<std::vector<MelFrame>> takes;
    for (std::size_t i = 0; i < durations.size(); ++i)
    {
        takes.push_back(Take(durations[i], i));
    }
    const auto alignment = AlignTakes(takes, 4, MixtureOf(takes));
    ASSERT_TRUE(alignment.has_value());
    ASSERT_THAT(alignment->labels, SizeIs(takes.size()));
    for (std::size_t i = 0; i < takes.size(); ++i)
    {
        SCOPED_TRACE(i);
        ASSERT_THAT(alignment->labels[i], SizeIs(takes[i].size()));
        // The deltas and their deltas reach four frames over a change. An equal split would be wrong by up to six.
        EXPECT_LE(LargestShift(alignment->labels[i], LabelsOf(durations[i])), 3) << testing::PrintToString(alignment->labels[i]);
    }
    EXPECT_THAT(alignment->tooShort, IsEmpty());
}

TEST(Alignment, DurationsAndSharesCountEveryFrameUpToTheLast)
{
    const std::vector<std::vector<MelFrame>> takes{Take({6, 6}, 1), Take({8, 4}, 2), Take({3, 5}, 3)};
    const auto alignment = AlignTakes(takes, 2, MixtureOf(takes));
    ASSERT_TRUE(alignment.has_value());
    EXPECT_NEAR(alignment->meanDurations[0] + alignment->meanDurations[1], 32.0 / 3.0, 1e-5);
    EXPECT_NEAR(alignment->shares[0] + alignment->shares[1], 1.0, 1e-6);
    EXPECT_NEAR(alignment->shares[0], alignment->meanDurations[0] * 3.0F / 32.0F, 1e-6);
}

TEST(Alignment, ATakeOfTheLeastLengthIsLabelledToItsLastFrame)
{
    // Without its last frame it would be too short.
    std::vector<std::vector<MelFrame>> takes;
    for (uint64_t i = 0; i < 20; ++i)
    {
        takes.push_back(Take({8, 8}, i));
    }
    takes.push_back(Take({3, 3}, 60));
    const auto alignment = AlignTakes(takes, 2, MixtureOf(takes));
    ASSERT_TRUE(alignment.has_value());
    EXPECT_EQ(alignment->labels.back(), LabelsOf({3, 3}));
}

TEST(Alignment, EveryFrameUpToTheLastCountsForItsState)
{
    std::vector<MixtureStatistics> statistics(3, {Eigen::VectorXf::Zero(1), Eigen::MatrixXf::Zero(1, 1)});
    Eigen::MatrixXf frames(1, 6);
    frames << 1.0F, 2.0F, 4.0F, 8.0F, 16.0F, 32.0F;
    const std::vector<int> labels{0, 0, 1, 2, 2, 2};
    AddToStates(labels, frames, Eigen::MatrixXf::Ones(1, 6), &statistics);
    EXPECT_FLOAT_EQ(statistics[0].sums(0, 0), 3.0F);
    EXPECT_FLOAT_EQ(statistics[1].sums(0, 0), 4.0F);
    EXPECT_FLOAT_EQ(statistics[2].sums(0, 0), 56.0F);
    EXPECT_FLOAT_EQ(statistics[2].counts(0), 3.0F);
}

TEST(Alignment, TakesTooShortForTheStatesAreReported)
{
    const std::vector<std::vector<MelFrame>> takes{Take({3, 3, 3}, 1), Take({3, 3, 2}, 2), Take({5, 4, 6}, 3), {}};
    const auto alignment = AlignTakes(takes, 3, MixtureOf({takes[0], takes[1], takes[2]}));
    ASSERT_TRUE(alignment.has_value());
    EXPECT_THAT(alignment->tooShort, ElementsAre(1U, 3U));
    EXPECT_EQ(alignment->labels[0], LabelsOf({3, 3, 3}));
    EXPECT_THAT(alignment->labels[1], IsEmpty());
    EXPECT_NEAR(alignment->meanDurations[0] + alignment->meanDurations[1] + alignment->meanDurations[2], 12.0, 1e-5);
}

TEST(Alignment, NothingComesOfTakesThatAreAllTooShort)
{
    const std::vector<std::vector<MelFrame>> takes{Take({4, 4}, 1)};
    EXPECT_FALSE(AlignTakes(takes, 3, MixtureOf({Take({20, 20}, 2)})).has_value());
}

TEST(Alignment, TheBestWayFollowsTheLikelihoods)
{
    Eigen::MatrixXf logLikelihoods(2, 8);
    logLikelihoods << 0, 0, 0, 0, 0, -1, -1, -1, //
        -1, -1, -1, -1, -1, 0, 0, 0;
    EXPECT_THAT(BestStates(logLikelihoods), ElementsAre(0, 0, 0, 0, 0, 1, 1, 1));
}

TEST(Alignment, EveryStateLastsThreeFramesHoweverUnlikely)
{
    Eigen::MatrixXf logLikelihoods = Eigen::MatrixXf::Zero(3, 9);
    logLikelihoods.row(1).setConstant(-100.0F);
    EXPECT_THAT(BestStates(logLikelihoods), ElementsAre(0, 0, 0, 1, 1, 1, 2, 2, 2));

    Eigen::MatrixXf longer = Eigen::MatrixXf::Zero(2, 10);
    longer.row(1).setConstant(-1.0F);
    EXPECT_THAT(BestStates(longer), ElementsAre(0, 0, 0, 0, 0, 0, 0, 1, 1, 1));
}

TEST(Alignment, TheLargestGainDecidesAndNotTheFirst)
{
    // Leaving state 0 after three frames gains 2 at once, after six it gains 5 at the end.
    Eigen::MatrixXf logLikelihoods = Eigen::MatrixXf::Zero(2, 9);
    logLikelihoods(1, 3) = 2.0F;
    logLikelihoods(0, 5) = 5.0F;
    EXPECT_THAT(BestStates(logLikelihoods), ElementsAre(0, 0, 0, 0, 0, 0, 1, 1, 1));
}

TEST(Alignment, LabelsOfACopyAtTheSameSpeedAreTheTakesOwn)
{
    const std::vector<int> labels = LabelsOf({4, 3, 5});
    EXPECT_EQ(CarryLabels(labels, 1.0, labels.size()), labels);
}

TEST(Alignment, LabelsOfAFasterCopyChangeEarlier)
{
    // Twice as fast: the middle of frame i, (i + 1.75) frames from the start, stands at frame 2 i + 1.75 of the take, rounded.
    EXPECT_THAT(CarryLabels(LabelsOf({4, 4, 4}), 2.0, 5), ElementsAre(0, 1, 1, 2, 2));
}

TEST(Alignment, LabelsOfASlowerCopyChangeLater)
{
    // Half as fast: frame i stands at frame i / 2 - 0.875, and before the first frame at the first.
    EXPECT_THAT(CarryLabels(LabelsOf({3, 3}), 0.5, 10), ElementsAre(0, 0, 0, 0, 0, 0, 0, 1, 1, 1));
}

TEST(Alignment, LabelsOfACopyThatLacksItsStartChangeEarlier)
{
    EXPECT_THAT(CarryLabels(LabelsOf({4, 4}), 1.0, 8, 160), ElementsAre(0, 0, 0, 1, 1, 1, 1, 1));
    EXPECT_THAT(CarryLabels(LabelsOf({4, 4}), 1.0, 8, 79), ElementsAre(0, 0, 0, 0, 1, 1, 1, 1));
    EXPECT_THAT(CarryLabels(LabelsOf({4, 4}), 1.0, 8, 81), ElementsAre(0, 0, 0, 1, 1, 1, 1, 1));
}

TEST(Alignment, LabelsPastTheEndOfTheTakeAreItsLast)
{
    EXPECT_THAT(CarryLabels(LabelsOf({1, 1}), 1.0, 4), ElementsAre(0, 1, 1, 1));
}

} // namespace AlignmentTests

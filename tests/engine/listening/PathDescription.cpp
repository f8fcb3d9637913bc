#include "engine/listening/PathDescription.h"

#include <gmock/gmock.h>

#include <cmath>

namespace
{

using namespace velox::engine;

/// Five states with these means, five frames in each.
PhrasePath Path(const std::vector<float>& means)
{
    PhrasePath path;
    for (const float mean : means)
    {
        path.counts.push_back(5);
        path.sums.push_back(5.0F * mean);
    }
    path.lowest = {-3.0F, -1.0F};
    return path;
}

StateModel Durations(std::size_t states, float duration)
{
    return {std::vector<float>(states + 1, 0.0F), std::vector<float>(states, duration)};
}

TEST(PathDescription, DescribesAPathByTwelveNumbers)
{
    const PhrasePath path = Path({2.0F, -1.0F, 0.0F, 3.0F, 1.0F});
    const auto features = DescribePath(path, Durations(5, 10.0F));
    const float soft = -std::log((std::exp(-2.0F) + std::exp(1.0F) + std::exp(0.0F) + std::exp(-3.0F) + std::exp(-1.0F)) / 5.0F);
    const std::vector<float> expected{-1.0F,              // lowest state
                                      -0.5F,              // two lowest: -1, 0
                                      0.5F,               // four lowest: -1, 0, 1, 2
                                      1.0F,               // median
                                      1.0F / 3.0F,        // three adjacent: (2 - 1 + 0) / 3
                                      1.0F / 3.0F - 1.0F, // less the median
                                      -2.0F,              // two lowest frames
                                      0.0F,               // durations: all half the mean, which is the tempo
                                      0.0F,               //
                                      1.0F / 3.0F,        // first three
                                      4.0F / 3.0F,        // last three
                                      soft};
    for (std::size_t i = 0; i < expected.size(); ++i)
    {
        EXPECT_NEAR(features[static_cast<Eigen::Index>(i)], expected[i], 1e-5F) << i;
    }
}

TEST(PathDescription, TheLargestErrorIsThatOfOneState)
{
    PhrasePath path = Path({1.0F, 1.0F, 1.0F});
    path.counts[1] = 40;
    path.sums[1] = 40.0F;
    const auto features = DescribePath(path, Durations(3, 5.0F));
    // Logarithms 0, ln 8 and 0 lie ln 8 / 3 off their mean, and 2 ln 8 / 3.
    const float third = std::log(8.0F) / 3.0F;
    EXPECT_NEAR(features[7], 4.0F * third * third, 1e-5F);
    EXPECT_NEAR(features[8], 2.0F * third * third, 1e-5F);
}

TEST(PathDescription, FewStatesAreNoTrouble)
{
    const auto features = DescribePath(Path({2.0F}), Durations(1, 5.0F));
    for (const int state : {0, 1, 2, 3, 4, 9, 10, 11})
    {
        EXPECT_NEAR(features[state], 2.0F, 1e-5F) << state;
    }
}

TEST(PathDescription, ThePhraseMayBeSaidAtAnyTempo)
{
    PhrasePath slow = Path({1.0F, 2.0F, 1.5F});
    const auto usual = DescribePath(slow, Durations(3, 5.0F));
    for (int32_t& count : slow.counts)
    {
        count *= 2;
    }
    for (float& sum : slow.sums)
    {
        sum *= 2.0F;
    }
    EXPECT_TRUE(DescribePath(slow, Durations(3, 5.0F)).isApprox(usual));
}

/// Log odds of 7 with a tail that starts at 2 and has a slope of 2: 2.5 factors e above its start.
TEST(PathDescription, TheJudgesWordIsCountedFromHalfAFalseAlarmPerHour)
{
    PhraseModel model;
    model.states = Durations(2, 5.0F);
    model.judge = {Eigen::VectorXf::Zero(PhraseModel::PathFeatures), 1.0F};
    model.judge.weights[0] = 6.0F;
    model.tail = {2.0F, 2.0F};
    const double start = std::log(BackgroundTail::AlarmsAtStart / 0.5);
    EXPECT_NEAR(JudgePath(model, Path({1.0F, 3.0F})), 2.5 - start, 1e-4);
}

} // namespace

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
    const float error = std::log(0.5F) * std::log(0.5F);
    const float soft = -std::log((std::exp(-2.0F) + std::exp(1.0F) + std::exp(0.0F) + std::exp(-3.0F) + std::exp(-1.0F)) / 5.0F);
    const std::vector<float> expected{-1.0F,              // lowest state
                                      -0.5F,              // two lowest: -1, 0
                                      0.5F,               // four lowest: -1, 0, 1, 2
                                      1.0F,               // median
                                      1.0F / 3.0F,        // three adjacent: (2 - 1 + 0) / 3
                                      1.0F / 3.0F - 1.0F, // less the median
                                      -2.0F,              // two lowest frames
                                      error,
                                      error,       // durations, all half the mean
                                      1.0F / 3.0F, // first three
                                      4.0F / 3.0F, // last three
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
    const float error = std::log(8.0F) * std::log(8.0F);
    EXPECT_NEAR(features[7], error, 1e-5F);
    EXPECT_NEAR(features[8], error / 3.0F, 1e-5F);
}

TEST(PathDescription, FewStatesAreNoTrouble)
{
    const auto features = DescribePath(Path({2.0F}), Durations(1, 5.0F));
    for (const int state : {0, 1, 2, 3, 4, 9, 10, 11})
    {
        EXPECT_NEAR(features[state], 2.0F, 1e-5F) << state;
    }
}

TEST(PathDescription, TheMarginIsWhatLiesAboveTheCut)
{
    NearPhraseCheck check;
    check.classifier.weights = Eigen::VectorXf::Zero(NearPhraseCheck::Features);
    check.classifier.weights[0] = 2.0F;
    check.classifier.bias = 1.0F;
    check.cut = 0.5F;
    EXPECT_NEAR(NearPhraseMargin(check, Path({1.0F, 3.0F}), Durations(2, 5.0F)), 2.0F + 1.0F - 0.5F, 1e-5F);
}

} // namespace

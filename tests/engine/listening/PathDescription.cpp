#include "engine/listening/PathDescription.h"

#include <gmock/gmock.h>

#include <cmath>

namespace PathDescriptionTests
{

using namespace velox::engine;

PhrasePath Path(const std::vector<float>& fits)
{
    return {0, fits, std::vector<int32_t>(fits.size(), 5), {}};
}

TEST(PathDescription, DescribesAPathByNineNumbers)
{
    const auto features = DescribePath(Path({2.0F, -1.0F, 0.0F, 3.0F, 1.0F}));
    const float soft = -std::log((std::exp(-2.0F) + std::exp(1.0F) + std::exp(0.0F) + std::exp(-3.0F) + std::exp(-1.0F)) / 5.0F);
    const std::vector<float> expected{-1.0F,              // lowest state
                                      -0.5F,              // two lowest: -1, 0
                                      0.5F,               // four lowest: -1, 0, 1, 2
                                      1.0F,               // median
                                      1.0F / 3.0F,        // three adjacent: (2 - 1 + 0) / 3
                                      1.0F / 3.0F - 1.0F, // less the median
                                      1.0F / 3.0F,        // first three
                                      4.0F / 3.0F,        // last three
                                      soft};
    for (std::size_t i = 0; i < expected.size(); ++i)
    {
        EXPECT_NEAR(features[static_cast<Eigen::Index>(i)], expected[i], 1e-5F) << i;
    }
}

TEST(PathDescription, FewStatesAreNoTrouble)
{
    const auto features = DescribePath(Path({2.0F}));
    for (const int state : {0, 1, 2, 3, 4, 6, 7, 8})
    {
        EXPECT_NEAR(features[state], 2.0F, 1e-5F) << state;
    }
}

TEST(PathDescription, DurationsDoNotMatter)
{
    PhrasePath slow = Path({1.0F, 2.0F, 1.5F});
    const auto usual = DescribePath(slow);
    slow.counts = {5, 90, 3};
    EXPECT_EQ(DescribePath(slow), usual);
}

/// Log odds of 7 with a tail that starts at 2 and has a slope of 2: 2.5 factors e above its start.
TEST(PathDescription, TheJudgesWordIsCountedFromHalfAFalseAlarmPerHour)
{
    PhraseModel model;
    model.judge = {Eigen::VectorXf::Zero(PhraseModel::PathFeatures), 1.0F};
    model.judge.weights[0] = 6.0F;
    model.tail = {2.0F, 2.0F};
    const double start = std::log(BackgroundTail::AlarmsAtStart / 0.5);
    EXPECT_NEAR(JudgePath(model, Path({1.0F, 3.0F})), 2.5 - start, 1e-4);
}

} // namespace PathDescriptionTests

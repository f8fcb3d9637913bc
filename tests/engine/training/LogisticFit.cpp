#include "engine/training/LogisticFit.h"

#include "engine/base/RandomStream.h"

#include <gmock/gmock.h>

#include <cmath>

namespace LogisticFitTests
{

using namespace velox::engine;

/// Normally distributed around a mean, deviation 1.
Eigen::MatrixXf Cloud(const Eigen::Vector2f& mean, Eigen::Index count, uint64_t seed)
{
    RandomStream random(seed);
    Eigen::MatrixXf points(2, count);
    for (Eigen::Index i = 0; i < count; ++i)
    {
        points.col(i) = mean + Eigen::Vector2f(static_cast<float>(random.Normal()), static_cast<float>(random.Normal()));
    }
    return points;
}

LogisticRegression Fit(const Eigen::MatrixXf& positive, const Eigen::MatrixXf& negative, float ridge = 0.003F)
{
    return FitLogisticRegression({{positive, true, 0.5}, {negative, false, 0.5}}, ridge);
}

/// For two normal classes of variance 1 the log odds are (m1 - m0) x - (m1^2 - m0^2) / 2.
TEST(LogisticFit, FindsTheLogOddsOfTwoNormalClasses)
{
    const LogisticRegression fit = Fit(Cloud({2.0F, 1.0F}, 20000, 1), Cloud({0.0F, 1.0F}, 20000, 2), 1e-6F);
    EXPECT_NEAR(fit.weights[0], 2.0F, 0.1F);
    EXPECT_NEAR(fit.weights[1], 0.0F, 0.1F);
    EXPECT_NEAR(fit.bias, -2.0F, 0.2F);
}

TEST(LogisticFit, BothClassesCountTheSameHoweverManyTheyAre)
{
    const LogisticRegression fit = Fit(Cloud({2.0F, 1.0F}, 1000, 1), Cloud({0.0F, 1.0F}, 30000, 2), 1e-6F);
    EXPECT_NEAR(fit.LogOdds(Eigen::Vector2f(1.0F, 1.0F)), 0.0F, 0.2F) << "the point halfway between";
}

TEST(LogisticFit, AGroupCountsForItsShare)
{
    const Eigen::MatrixXf positive = Cloud({2.0F, 1.0F}, 2000, 1);
    const Eigen::MatrixXf near = Cloud({1.0F, 1.0F}, 20000, 2);
    const Eigen::MatrixXf far = Cloud({-2.0F, 1.0F}, 200, 3);
    const LogisticRegression fit =
        FitLogisticRegression({{positive, true, 0.5}, {near, false, 0.001}, {far, false, 0.499}}, 1e-6F);
    EXPECT_NEAR(fit.LogOdds(Eigen::Vector2f(0.0F, 1.0F)), 0.0F, 0.5F) << "halfway to those that count";
}

TEST(LogisticFit, APenaltyKeepsSeparableClassesFinite)
{
    const Eigen::MatrixXf positive = Eigen::MatrixXf::Constant(1, 3, 1.0F);
    const Eigen::MatrixXf negative = Eigen::MatrixXf::Constant(1, 3, -1.0F);
    const LogisticRegression fit = Fit(positive, negative);
    EXPECT_TRUE(std::isfinite(fit.weights[0]));
    EXPECT_GT(fit.weights[0], 0.5F);
    EXPECT_NEAR(fit.bias, 0.0F, 1e-5F);
}

TEST(LogisticFit, AFeatureThatNeverChangesIsNoTrouble)
{
    Eigen::MatrixXf positive = Cloud({2.0F, 0.0F}, 100, 1);
    Eigen::MatrixXf negative = Cloud({0.0F, 0.0F}, 100, 2);
    positive.row(1).setConstant(4.0F);
    negative.row(1).setConstant(4.0F);
    const LogisticRegression fit = Fit(positive, negative);
    EXPECT_GT(fit.LogOdds(Eigen::Vector2f(3.0F, 4.0F)), 0.0F);
    EXPECT_LT(fit.LogOdds(Eigen::Vector2f(-1.0F, 4.0F)), 0.0F);
}

TEST(LogisticFit, LogOddsAreLinear)
{
    const LogisticRegression classifier{Eigen::Vector2f(2.0F, -1.0F), 0.5F};
    EXPECT_FLOAT_EQ(classifier.LogOdds(Eigen::Vector2f(3.0F, 4.0F)), 2.5F);
}

} // namespace LogisticFitTests

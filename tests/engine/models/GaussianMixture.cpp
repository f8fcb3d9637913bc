#include "engine/models/GaussianMixture.h"

#include "engine/base/RandomStream.h"

#include <gmock/gmock.h>

#include <cmath>
#include <numbers>

namespace GaussianMixtureTests
{

using namespace velox::engine;

/// Two components in one dimension: weights 1/4 and 3/4, means 0 and 4, variances 1 and 4.
GaussianMixture TwoComponents()
{
    return {Eigen::Vector2f(0.25F, 0.75F), Eigen::RowVector2f(0.0F, 4.0F), Eigen::RowVector2f(1.0F, 4.0F)};
}

double Density(double x, double mean, double variance)
{
    return std::exp(-0.5 * (x - mean) * (x - mean) / variance) / std::sqrt(2.0 * std::numbers::pi * variance);
}

/// A third of the frames around (-3, 1) with deviations (0.5, 1), two thirds around (5, -2) with deviations (1, 0.25).
Eigen::MatrixXf TwoClusters(Eigen::Index count)
{
    RandomStream random(7);
    Eigen::MatrixXf frames(2, count);
    for (Eigen::Index t = 0; t < count; ++t)
    {
        const auto x = static_cast<float>(random.Normal());
        const auto y = static_cast<float>(random.Normal());
        if (t % 3 == 0)
        {
            frames.col(t) << -3.0F + 0.5F * x, 1.0F + y;
        }
        else
        {
            frames.col(t) << 5.0F + x, -2.0F + 0.25F * y;
        }
    }
    return frames;
}

MixtureTraining Training(Eigen::Index components)
{
    MixtureTraining training;
    training.components = components;
    return training;
}

TEST(GaussianMixture, LogLikelihoodIsThatOfTheWeightedDensities)
{
    Eigen::MatrixXf frames(1, 3);
    frames << 0.0F, 2.0F, -30.0F;
    const Eigen::VectorXf logLikelihoods = TwoComponents().LogLikelihoods(frames);
    for (Eigen::Index t = 0; t < frames.cols(); ++t)
    {
        const auto x = static_cast<double>(frames(0, t));
        const double expected = std::log(0.25 * Density(x, 0.0, 1.0) + 0.75 * Density(x, 4.0, 4.0));
        EXPECT_NEAR(logLikelihoods(t), expected, 1e-4 * std::abs(expected)) << x;
    }
}

TEST(GaussianMixture, LogLikelihoodsOfManyFramesAreThoseOfEachFrameAlone)
{
    const Eigen::MatrixXf frames = TwoClusters(1300);
    const GaussianMixture mixture = TrainMixture(frames, Training(3));
    const Eigen::VectorXf together = mixture.LogLikelihoods(frames);
    for (const Eigen::Index t : {0, 511, 512, 1023, 1024, 1299})
    {
        EXPECT_NEAR(together(t), mixture.LogLikelihoods(frames.col(t))(0), 1e-4) << t;
    }
}

TEST(GaussianMixture, FramesFarFromEveryComponentHaveAFiniteLogLikelihood)
{
    const Eigen::VectorXf logLikelihood = TwoComponents().LogLikelihoods(Eigen::MatrixXf::Constant(1, 1, -1e4F));
    EXPECT_NEAR(logLikelihood(0), std::log(0.75) - 0.5 * std::log(2.0 * std::numbers::pi * 4.0) - 1.0004e4 * 1.0004e4 / 8.0,
                100.0);
}

TEST(GaussianMixture, PosteriorsAreSharesOfTheDensities)
{
    const Eigen::MatrixXf posteriors = TwoComponents().Posteriors(Eigen::MatrixXf::Constant(1, 1, 2.0F));
    const double first = 0.25 * Density(2.0, 0.0, 1.0);
    const double second = 0.75 * Density(2.0, 4.0, 4.0);
    EXPECT_NEAR(posteriors(0, 0), first / (first + second), 1e-5);
    EXPECT_NEAR(posteriors(1, 0), second / (first + second), 1e-5);
}

TEST(GaussianMixture, TrainingFindsTwoClusters)
{
    const GaussianMixture mixture = TrainMixture(TwoClusters(6000), Training(2));
    const Eigen::Index small = mixture.Weights()(0) < mixture.Weights()(1) ? 0 : 1;
    const Eigen::Index large = 1 - small;
    EXPECT_NEAR(mixture.Weights()(small), 1.0 / 3.0, 0.01);
    EXPECT_NEAR(mixture.Means()(0, small), -3.0, 0.05);
    EXPECT_NEAR(mixture.Means()(1, small), 1.0, 0.1);
    EXPECT_NEAR(mixture.Means()(0, large), 5.0, 0.05);
    EXPECT_NEAR(mixture.Means()(1, large), -2.0, 0.02);
    EXPECT_NEAR(mixture.Variances()(0, small), 0.25, 0.03);
    EXPECT_NEAR(mixture.Variances()(1, small), 1.0, 0.1);
    EXPECT_NEAR(mixture.Variances()(0, large), 1.0, 0.1);
}

TEST(GaussianMixture, OneComponentIsTheMeanAndTheVariance)
{
    Eigen::MatrixXf frames(1, 4);
    frames << 1.0F, 3.0F, 5.0F, 7.0F;
    const GaussianMixture mixture = TrainMixture(frames, Training(1));
    EXPECT_FLOAT_EQ(mixture.Weights()(0), 1.0F);
    EXPECT_FLOAT_EQ(mixture.Means()(0, 0), 4.0F);
    EXPECT_FLOAT_EQ(mixture.Variances()(0, 0), 5.0F);
}

TEST(GaussianMixture, VariancesDoNotFallBelowTheirFloor)
{
    // Two values only: without a floor, both components would become points.
    Eigen::MatrixXf frames(1, 200);
    for (Eigen::Index t = 0; t < frames.cols(); ++t)
    {
        frames(0, t) = t % 2 == 0 ? -1.0F : 1.0F;
    }
    const GaussianMixture mixture = TrainMixture(frames, Training(2));
    EXPECT_NEAR(mixture.Variances().minCoeff(), 0.01, 1e-5); // 0.01 of the variance 1
    EXPECT_NEAR(mixture.Means().minCoeff(), -1.0, 1e-4);
    EXPECT_NEAR(mixture.Means().maxCoeff(), 1.0, 1e-4);
}

TEST(GaussianMixture, MoreRoundsDoNotLowerTheLikelihood)
{
    const Eigen::MatrixXf frames = TwoClusters(3000);
    double former = -1e30;
    for (int rounds = 0; rounds < 6; ++rounds)
    {
        MixtureTraining training = Training(4);
        training.rounds = rounds;
        const auto mean = static_cast<double>(TrainMixture(frames, training).LogLikelihoods(frames).mean());
        EXPECT_GE(mean, former - 1e-5) << rounds;
        former = mean;
    }
}

TEST(GaussianMixture, TheSameSeedGivesTheSameMixture)
{
    const Eigen::MatrixXf frames = TwoClusters(2000);
    MixtureTraining training = Training(8);
    const GaussianMixture first = TrainMixture(frames, training);
    EXPECT_EQ(TrainMixture(frames, training).Means(), first.Means());
    training.seed = 2;
    EXPECT_NE(TrainMixture(frames, training).Means(), first.Means());
}

TEST(GaussianMixture, FewerDifferentFramesThanComponentsStillGiveAFiniteMixture)
{
    const GaussianMixture mixture = TrainMixture(Eigen::MatrixXf::Constant(3, 10, 2.0F), Training(4));
    EXPECT_TRUE(mixture.Means().allFinite());
    EXPECT_TRUE(mixture.LogLikelihoods(Eigen::MatrixXf::Constant(3, 1, 2.0F)).allFinite());
}

TEST(GaussianMixture, StatisticsAreSumsWeightedByThePosteriors)
{
    MixtureStatistics statistics = MixtureStatistics::Empty(TwoComponents());
    Eigen::MatrixXf frames(1, 2);
    frames << 10.0F, 20.0F;
    Eigen::MatrixXf posteriors(2, 2);
    posteriors << 1.0F, 0.25F, 0.0F, 0.75F;
    statistics.Add(frames, posteriors);
    EXPECT_FLOAT_EQ(statistics.counts(0), 1.25F);
    EXPECT_FLOAT_EQ(statistics.counts(1), 0.75F);
    EXPECT_FLOAT_EQ(statistics.sums(0, 0), 15.0F);
    EXPECT_FLOAT_EQ(statistics.sums(0, 1), 15.0F);

    statistics.Scale(0.25F);
    EXPECT_FLOAT_EQ(statistics.counts(1), 0.1875F);
    EXPECT_FLOAT_EQ(statistics.sums(0, 1), 3.75F);
}

TEST(GaussianMixture, AdaptationWeighsThePriorAsRelevanceFrames)
{
    MixtureStatistics statistics = MixtureStatistics::Empty(TwoComponents());
    statistics.counts << 16.0F, 0.0F;
    statistics.sums << 32.0F, 0.0F;
    const GaussianMixture adapted = AdaptMixture(TwoComponents(), statistics, 16.0F);
    EXPECT_FLOAT_EQ(adapted.Means()(0, 0), 1.0F);         // (32 + 16 * 0) / 32
    EXPECT_FLOAT_EQ(adapted.Means()(0, 1), 4.0F);         // no frames: as it was
    EXPECT_FLOAT_EQ(adapted.Weights()(0), 20.0F / 32.0F); // (16 + 16 / 4) / (16 + 16)
    EXPECT_FLOAT_EQ(adapted.Weights()(1), 12.0F / 32.0F);
    EXPECT_EQ(adapted.Variances(), TwoComponents().Variances());
}

TEST(GaussianMixture, AdaptationToNothingChangesNothing)
{
    const GaussianMixture prior = TwoComponents();
    const GaussianMixture adapted = AdaptMixture(prior, MixtureStatistics::Empty(prior), 4.0F);
    EXPECT_EQ(adapted.Means(), prior.Means());
    EXPECT_TRUE(adapted.Weights().isApprox(prior.Weights()));
}

} // namespace GaussianMixtureTests

#include "engine/training/SmoothedCrossEntropy.h"

#include "tests/engine/support/GradientCheck.h"

#include <gmock/gmock.h>

namespace SmoothedCrossEntropyTests
{

using velox::engine::RandomStream;

constexpr auto& Compute = velox::engine::SmoothedCrossEntropy;

TEST(SmoothedCrossEntropy, IsTheLogarithmOfTheLabelledPosterior)
{
    // Posteriors 1/4, 1/2, 1/4.
    Eigen::MatrixXf outputs{{0.0F}, {std::log(2.0F)}, {0.0F}};
    EXPECT_NEAR(Compute({1}, 0.0F, 1.0F, &outputs), std::log(2.0), 1e-6);
    EXPECT_TRUE(outputs.isApprox(Eigen::Vector3f(0.25F, -0.5F, 0.25F), 1e-5F)) << outputs;
}

TEST(SmoothedCrossEntropy, SharesAPartOfTheLabelOutAmongAllClasses)
{
    // Of 0.3, every class gets 0.1: targets 0.1, 0.8, 0.1.
    Eigen::MatrixXf outputs{{0.0F}, {std::log(2.0F)}, {0.0F}};
    EXPECT_NEAR(Compute({1}, 0.3F, 1.0F, &outputs), 0.2 * std::log(4.0) + 0.8 * std::log(2.0), 1e-6);
    EXPECT_TRUE(outputs.isApprox(Eigen::Vector3f(0.15F, -0.3F, 0.15F), 1e-5F)) << outputs;
}

TEST(SmoothedCrossEntropy, SumsScaledColumns)
{
    Eigen::MatrixXf outputs = Eigen::MatrixXf::Zero(4, 3);
    EXPECT_NEAR(Compute({0, 1, 2}, 0.0F, 0.5F, &outputs), 1.5 * std::log(4.0), 1e-6);
    EXPECT_TRUE(outputs.col(2).isApprox(Eigen::Vector4f(0.125F, 0.125F, -0.375F, 0.125F), 1e-5F)) << outputs;
}

TEST(SmoothedCrossEntropy, StaysFiniteForLargeOutputs)
{
    Eigen::MatrixXf outputs{{1000.0F}, {0.0F}};
    EXPECT_NEAR(Compute({1}, 0.0F, 1.0F, &outputs), 1000.0, 1e-3);
    EXPECT_TRUE(outputs.isApprox(Eigen::Vector2f(1.0F, -1.0F)));
}

TEST(SmoothedCrossEntropy, GradientIsThatOfFiniteDifferences)
{
    const std::vector<int> labels{2, 0, 1, 2, 4};
    RandomStream random(9);
    Eigen::MatrixXf outputs = RandomMatrix(5, 5, &random);
    const auto compute = [&](Eigen::MatrixXf* values) {
        return Compute(labels, 0.1F, 0.7F, values);
    };
    Eigen::MatrixXf gradient = outputs;
    compute(&gradient);
    const auto loss = [&] {
        Eigen::MatrixXf copy = outputs;
        return compute(&copy);
    };
    EXPECT_LT(LargestGradientError(gradient, &outputs, loss), 1e-3);
}

} // namespace SmoothedCrossEntropyTests

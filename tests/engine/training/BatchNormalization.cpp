#include "engine/training/BatchNormalization.h"

#include "tests/engine/support/GradientCheck.h"

#include <gmock/gmock.h>

namespace BatchNormalizationTests
{

using velox::engine::RandomStream;

class BatchNormalization : public testing::Test
{
protected:
    RandomStream random{5};
    Eigen::MatrixXf input = RandomMatrix(3, 7, &random);
    Eigen::VectorXf gain = RandomMatrix(3, 1, &random);
    Eigen::VectorXf shift = RandomMatrix(3, 1, &random);
    Eigen::MatrixXf outputGradient = RandomMatrix(3, 7, &random);

    /// A loss whose gradient by the outputs is outputGradient.
    double Loss() const
    {
        velox::engine::BatchNormalization normalization;
        Eigen::MatrixXf values = input;
        normalization.Forward(gain, shift, &values);
        return values.cast<double>().cwiseProduct(outputGradient.cast<double>()).sum();
    }
};

TEST_F(BatchNormalization, ScalesRowsToMeanZeroAndVarianceOneThenByGainAndShift)
{
    velox::engine::BatchNormalization normalization;
    Eigen::MatrixXf values{{1.0F, 3.0F, 5.0F, 7.0F}, {-10.0F, -10.0F, 10.0F, 10.0F}};
    normalization.Forward(Eigen::Vector2f(1.0F, 2.0F), Eigen::Vector2f(0.0F, 100.0F), &values);

    // The first row has the mean 4 and the variance 5.
    const float unit = 1.0F / std::sqrt(5.0F);
    const Eigen::MatrixXf expected{{-3.0F * unit, -unit, unit, 3.0F * unit}, {98.0F, 98.0F, 102.0F, 102.0F}};
    EXPECT_TRUE(values.isApprox(expected, 1e-5F)) << values;
    EXPECT_TRUE(normalization.Mean().isApprox(Eigen::Vector2f(4.0F, 0.0F)));
    EXPECT_TRUE(normalization.Variance().isApprox(Eigen::Vector2f(5.0F, 100.0F)));
}

TEST_F(BatchNormalization, ARowOfEqualValuesBecomesItsShift)
{
    velox::engine::BatchNormalization normalization;
    Eigen::MatrixXf values = Eigen::MatrixXf::Constant(1, 4, 3.0F);
    const Eigen::VectorXf one = Eigen::VectorXf::Ones(1);
    normalization.Forward(one, 0.5F * one, &values);
    EXPECT_EQ(values, Eigen::MatrixXf::Constant(1, 4, 0.5F));
}

TEST_F(BatchNormalization, GradientsAreThoseOfFiniteDifferences)
{
    velox::engine::BatchNormalization normalization;
    Eigen::MatrixXf values = input;
    normalization.Forward(gain, shift, &values);
    Eigen::MatrixXf gradient = outputGradient;
    Eigen::VectorXf gainGradient = Eigen::VectorXf::Constant(3, 4711.0F);
    Eigen::VectorXf shiftGradient = Eigen::VectorXf::Constant(3, 4711.0F);
    normalization.Backward(gain, &gradient, gainGradient, shiftGradient);

    const auto loss = [this] {
        return Loss();
    };
    EXPECT_LT(LargestGradientError(gradient, &input, loss), 2e-3);
    EXPECT_LT(LargestGradientError(gainGradient, &gain, loss), 1e-3);
    EXPECT_LT(LargestGradientError(shiftGradient, &shift, loss), 1e-3);
}

} // namespace BatchNormalizationTests

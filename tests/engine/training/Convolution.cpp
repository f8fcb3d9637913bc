#include "engine/training/Convolution.h"

#include "tests/engine/support/GradientCheck.h"

#include <gmock/gmock.h>

#include <functional>

namespace ConvolutionTests
{

using velox::engine::Convolve;
using velox::engine::InputGradient;
using velox::engine::RandomStream;
using velox::engine::WeightGradient;

TEST(Convolution, SumsTheTapsOverTheColumnsAStrideApart)
{
    const Eigen::MatrixXf weights{{1.0F, 2.0F, 10.0F, 20.0F}, {0.0F, -1.0F, 0.5F, 0.0F}};
    const Eigen::MatrixXf input{{1.0F, 2.0F, 3.0F, 4.0F}, {5.0F, 6.0F, 7.0F, 8.0F}};
    Eigen::MatrixXf output;
    Convolve(weights, 2, input, &output);

    // 1 * 1 + 2 * 5 + 10 * 3 + 20 * 7 = 181 and so on; columns 0 and 2 make output 0, 1 and 3 output 1.
    EXPECT_EQ(output, (Eigen::MatrixXf{{181.0F, 214.0F}, {-3.5F, -4.0F}}));
}

TEST(Convolution, WithOneTapIsTheProduct)
{
    RandomStream random(1);
    const Eigen::MatrixXf weights = RandomMatrix(3, 2, &random);
    const Eigen::MatrixXf input = RandomMatrix(2, 5, &random);
    Eigen::MatrixXf output;
    Convolve(weights, 1, input, &output);
    EXPECT_TRUE(output.isApprox(weights * input));
}

/// A loss whose gradient by the outputs is known, and what it depends on.
struct LinearLoss
{
    Eigen::Index taps;
    Eigen::Index stride;
    RandomStream random{11};
    Eigen::MatrixXf weights = RandomMatrix(2, 3 * taps, &random);
    Eigen::MatrixXf input = RandomMatrix(3, 9, &random);
    Eigen::MatrixXf outputGradient = RandomMatrix(2, 9 - (taps - 1) * stride, &random);

    double operator()() const
    {
        Eigen::MatrixXf output;
        Convolve(weights, stride, input, &output);
        return output.cast<double>().cwiseProduct(outputGradient.cast<double>()).sum();
    }
};

struct TapsCase
{
    const char* description;
    Eigen::Index taps;
    Eigen::Index stride;
};

constexpr TapsCase TapsCases[] = {{"one tap", 1, 1}, {"three taps side by side", 3, 1}, {"three taps apart", 3, 2}};

TEST(Convolution, WeightGradientIsThatOfFiniteDifferences)
{
    for (const TapsCase& given : TapsCases)
    {
        SCOPED_TRACE(given.description);
        LinearLoss loss{given.taps, given.stride};
        Eigen::MatrixXf gradient = Eigen::MatrixXf::Constant(2, 3 * given.taps, 4711.0F);
        WeightGradient(loss.outputGradient, given.stride, loss.input, gradient);
        EXPECT_LT(LargestGradientError(gradient, &loss.weights, std::cref(loss)), 1e-3);
    }
}

TEST(Convolution, InputGradientIsThatOfFiniteDifferences)
{
    for (const TapsCase& given : TapsCases)
    {
        SCOPED_TRACE(given.description);
        LinearLoss loss{given.taps, given.stride};
        Eigen::MatrixXf gradient = Eigen::MatrixXf::Constant(3, 9, 4711.0F);
        InputGradient(loss.weights, given.stride, loss.outputGradient, &gradient);
        EXPECT_LT(LargestGradientError(gradient, &loss.input, std::cref(loss)), 1e-3);
    }
}

} // namespace ConvolutionTests

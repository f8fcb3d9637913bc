#include "engine/training/DroppingRectifier.h"

#include "tests/engine/support/GradientCheck.h"

#include <gmock/gmock.h>

namespace DroppingRectifierTests
{

using velox::engine::RandomStream;
using Rectifier = velox::engine::DroppingRectifier;

TEST(DroppingRectifier, WithoutDroppingOnlyNegativeValuesBecomeZero)
{
    RandomStream random(1);
    Eigen::MatrixXf values{{-1.0F, 0.0F, 0.25F}, {3.0F, -0.5F, 2.0F}};
    Rectifier(0.0).Forward(&random, &values);
    EXPECT_EQ(values, (Eigen::MatrixXf{{0.0F, 0.0F, 0.25F}, {3.0F, 0.0F, 2.0F}}));
}

TEST(DroppingRectifier, DropsItsShareAndKeepsTheMean)
{
    RandomStream random(2);
    Eigen::MatrixXf values = Eigen::MatrixXf::Ones(64, 1000);
    Rectifier(0.1).Forward(&random, &values);
    const auto dropped = static_cast<double>((values.array() == 0.0F).count());
    EXPECT_NEAR(dropped / 64000.0, 0.1, 0.005);
    EXPECT_EQ((values.array() == 1.0F / 0.9F).count(), 64000 - (values.array() == 0.0F).count());
}

TEST(DroppingRectifier, DropsOtherValuesEachTime)
{
    RandomStream random(3);
    Eigen::MatrixXf first = Eigen::MatrixXf::Ones(16, 16);
    Eigen::MatrixXf second = first;
    Rectifier(0.5).Forward(&random, &first);
    Rectifier(0.5).Forward(&random, &second);
    EXPECT_GT((first.array() != second.array()).count(), 64);
}

TEST(DroppingRectifier, OnlyWhatPassedHasAGradientScaledAlike)
{
    RandomStream random(4);
    Eigen::MatrixXf outputs = RandomMatrix(8, 8, &random);
    const Eigen::MatrixXf inputs = outputs;
    Rectifier(0.5).Forward(&random, &outputs);
    Eigen::MatrixXf gradient = Eigen::MatrixXf::Constant(8, 8, 3.0F);
    Rectifier(0.5).Backward(outputs, &gradient);

    EXPECT_TRUE(outputs.isApprox(inputs.cwiseProduct(gradient) / 3.0F));
    EXPECT_THAT(std::vector<float>(gradient.reshaped().begin(), gradient.reshaped().end()),
                testing::Each(testing::AnyOf(0.0F, 6.0F)));
}

} // namespace DroppingRectifierTests

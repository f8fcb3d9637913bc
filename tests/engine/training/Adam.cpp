#include "engine/training/Adam.h"

#include <gmock/gmock.h>

namespace AdamTests
{

using velox::engine::Adam;

Eigen::VectorXf Vector(std::initializer_list<float> values)
{
    return Eigen::Map<const Eigen::VectorXf>(values.begin(), static_cast<Eigen::Index>(values.size()));
}

TEST(Adam, TheFirstStepHasTheSizeOfTheRateWhateverTheGradient)
{
    Adam adam(3);
    Eigen::VectorXf parameters = Vector({1.0F, 1.0F, 1.0F});
    adam.Step(Vector({1000.0F, -0.001F, 0.0F}), 0.1, &parameters);
    EXPECT_NEAR(parameters[0], 0.9F, 1e-6F);
    EXPECT_NEAR(parameters[1], 1.1F, 1e-5F);
    EXPECT_EQ(parameters[2], 1.0F);
}

TEST(Adam, FollowsTheMeanOfTheGradientsOverTheRootOfTheirSquares)
{
    Adam adam(1);
    Eigen::VectorXf parameters = Vector({0.0F});
    adam.Step(Vector({2.0F}), 0.1, &parameters);
    EXPECT_NEAR(parameters[0], -0.1F, 1e-6F);

    // Mean: (0.9 * 0.1 * 2 + 0.1 * -1) / (1 - 0.81) = 0.08 / 0.19 = 0.421053; square: (0.999 * 0.001 * 4 + 0.001 * 1) / (1 -
    // 0.998001) = 0.004996 / 0.001999 = 2.499250, its root 1.580902; step 0.1 * 0.266337.
    adam.Step(Vector({-1.0F}), 0.1, &parameters);
    EXPECT_NEAR(parameters[0], -0.1266337F, 1e-5F);

    // Mean: (0.9 * 0.08 + 0.1 * 3) / (1 - 0.729) = 1.372694; square: (0.999 * 0.004996 + 0.001 * 9) / (1 - 0.997002999)
    // = 4.668336, its root 2.160633; step 0.2 * 0.635321.
    adam.Step(Vector({3.0F}), 0.2, &parameters);
    EXPECT_NEAR(parameters[0], -0.2536979F, 2e-5F);
}

TEST(Adam, FindsTheLowestPointOfAValley)
{
    Adam adam(2);
    Eigen::VectorXf parameters = Vector({3.0F, -2.0F});
    for (int i = 0; i < 2000; ++i)
    {
        adam.Step(Vector({2.0F * (parameters[0] - 1.0F), 200.0F * (parameters[1] - 0.5F)}), 0.01, &parameters);
    }
    EXPECT_NEAR(parameters[0], 1.0F, 1e-3F);
    EXPECT_NEAR(parameters[1], 0.5F, 1e-3F);
}

} // namespace AdamTests

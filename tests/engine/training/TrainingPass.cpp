#include "engine/training/TrainingPass.h"

#include "engine/training/SmoothedCrossEntropy.h"
#include "tests/engine/support/GradientCheck.h"

#include <gmock/gmock.h>

namespace TrainingPassTests
{

using velox::engine::DroppingRectifier;
using velox::engine::RandomStream;
using velox::engine::SmoothedCrossEntropy;
using velox::engine::TimeDelayShapes;
using velox::engine::TrainingNetwork;
using Pass = velox::engine::TrainingPass;

constexpr int Crops = 3;
constexpr int Outputs = 8;

class TrainingPass : public testing::TestWithParam<double>
{
protected:
    TrainingPass()
    {
        for (int crop = 0; crop < Crops; ++crop)
        {
            pass.SetCrop(crop, RandomMatrix(2, pass.CropFrames(), &random));
        }
    }

    RandomStream random{1};
    TrainingNetwork network{{{2, 4, 3, 1}, {4, 4, 2, 2}, {4, 4, 3, 4}, {4, 3, 1, 1}}, &random};
    Pass pass{network, Crops, Outputs, 2};
};

/// The parameter is the share that is dropped; the same values are dropped each time.
TEST_P(TrainingPass, ParameterGradientIsThatOfFiniteDifferences)
{
    const DroppingRectifier rectifier(GetParam());
    std::vector<int> labels;
    for (int i = 0; i < Crops * Outputs; ++i)
    {
        labels.push_back(i % 3);
    }
    const auto loss = [&] {
        RandomStream same(2);
        return SmoothedCrossEntropy(labels, 0.1F, 1.0F, &pass.Forward(rectifier, &same));
    };
    loss();
    pass.Backward(rectifier);
    const Eigen::VectorXf gradient = pass.Gradient();
    EXPECT_GT(gradient.cwiseAbs().maxCoeff(), 1.0F);
    EXPECT_LT(LargestGradientError(gradient, &network.Parameters(), loss, 5e-4F), 0.01);
}

INSTANTIATE_TEST_SUITE_P(Dropout, TrainingPass, testing::Values(0.0, 0.3));

TEST_F(TrainingPass, CropFramesAreWhatTheOutputsDependOn)
{
    // The field of 3 + 2 + 8 frames, and two frames for each further output.
    EXPECT_EQ(pass.CropFrames(), 13 + 2 * (Outputs - 1));
    RandomStream stream(1);
    const TrainingNetwork timeDelay(TimeDelayShapes(18), &stream);
    EXPECT_EQ(Pass(timeDelay, 1, 40, 3).CropFrames(), 35 + 3 * 39);
}

TEST_F(TrainingPass, GivesAColumnOfClassesForEachOutputOfEachCrop)
{
    const Eigen::MatrixXf& outputs = pass.Forward(DroppingRectifier(0.0), &random);
    EXPECT_EQ(outputs.rows(), 3);
    EXPECT_EQ(outputs.cols(), Crops * Outputs);
}

TEST_F(TrainingPass, ASecondPassDoesNotDependOnTheFirst)
{
    const DroppingRectifier rectifier(0.0);
    const Eigen::MatrixXf first = pass.Forward(rectifier, &random);
    pass.Backward(rectifier);
    const Eigen::VectorXf gradient = pass.Gradient();
    EXPECT_EQ(pass.Forward(rectifier, &random), first);
    pass.Backward(rectifier);
    EXPECT_EQ(pass.Gradient(), gradient);
}

} // namespace TrainingPassTests

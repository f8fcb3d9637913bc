#include "engine/training/TrainingNetwork.h"

#include "engine/listening/StreamingNetwork.h"
#include "engine/training/TrainingPass.h"
#include "tests/engine/support/GradientCheck.h"

#include <gmock/gmock.h>

namespace TrainingNetworkTests
{

using velox::engine::DroppingRectifier;
using velox::engine::LayerShape;
using velox::engine::LogSoftmax;
using velox::engine::MelChannels;
using velox::engine::MelFrame;
using velox::engine::Network;
using velox::engine::RandomStream;
using velox::engine::RowStatistics;
using velox::engine::StreamingNetwork;
using velox::engine::TimeDelayShapes;
using velox::engine::TrainingPass;
using Learning = velox::engine::TrainingNetwork;

TEST(TrainingNetwork, StartsWithRandomWeightsOfHesDeviationAndPlainNormalisation)
{
    RandomStream random(1);
    const Learning network(TimeDelayShapes(18), &random);
    for (std::size_t layer = 0; layer < 5; ++layer)
    {
        SCOPED_TRACE(layer);
        const auto part = network.Part(layer);
        const LayerShape& shape = network.Shapes()[layer];
        EXPECT_EQ(part.weights.rows(), shape.outputs);
        EXPECT_EQ(part.weights.cols(), shape.kernel * shape.inputs);
        const float deviation = part.weights.norm() / std::sqrt(static_cast<float>(part.weights.size()));
        EXPECT_NEAR(deviation, std::sqrt(2.0F / static_cast<float>(part.weights.cols())), 0.05F * deviation);
        EXPECT_EQ(part.gain.size(), layer < 4 ? 64 : 0);
        EXPECT_TRUE(part.gain.isOnes(0.0F));
        EXPECT_TRUE(part.shift.isZero(0.0F));
    }
}

TEST(TrainingNetwork, PartsLieSideBySideAndFillTheVector)
{
    RandomStream random(1);
    const Learning network({{2, 3, 2, 1}, {3, 4, 1, 1}}, &random);
    Eigen::VectorXf vector = Eigen::VectorXf::Zero(network.Parameters().size());
    Learning::LayerPart first = network.Part(0, &vector);
    first.weights.array() += 1.0F;
    first.gain.array() += 2.0F;
    first.shift.array() += 3.0F;
    Learning::LayerPart second = network.Part(1, &vector);
    second.weights.array() += 4.0F;
    second.shift.array() += 5.0F;

    Eigen::VectorXf expected(12 + 3 + 3 + 12 + 4);
    expected << Eigen::VectorXf::Constant(12, 1.0F), Eigen::VectorXf::Constant(3, 2.0F), Eigen::VectorXf::Constant(3, 3.0F),
        Eigen::VectorXf::Constant(12, 4.0F), Eigen::VectorXf::Constant(4, 5.0F);
    EXPECT_EQ(vector, expected);
}

TEST(TrainingNetwork, TimeDelayLayersHaveAFieldOf35Frames)
{
    RandomStream random(1);
    const Network network = Learning(TimeDelayShapes(18), &random).Fold({});
    EXPECT_EQ(network.Field(), 35);
    EXPECT_EQ(network.layers.front().Inputs(), 40);
    EXPECT_EQ(network.layers.back().bias.size(), 19);
}

TEST(TrainingNetwork, FoldsMeansAndVariancesIntoWeightsAndBias)
{
    RandomStream random(1);
    Learning network({{1, 1, 2, 1}, {1, 2, 1, 1}}, &random);
    // Weights 3 and 5, gain 4, shift 7; weights 1 and 2, biases 8 and 9.
    network.Parameters() << 3.0F, 5.0F, 4.0F, 7.0F, 1.0F, 2.0F, 8.0F, 9.0F;
    const Network folded = network.Fold({{Eigen::VectorXf::Constant(1, 10.0F), Eigen::VectorXf::Constant(1, 0.25F)}});

    // The gain over the deviation is 8: 8 * 3, 8 * 5, 7 - 8 * 10.
    EXPECT_TRUE(folded.layers[0].weights.isApprox(Eigen::RowVector2f(24.0F, 40.0F), 1e-4F)) << folded.layers[0].weights;
    EXPECT_NEAR(folded.layers[0].bias[0], -73.0F, 1e-2F);
    EXPECT_EQ(folded.layers[1].weights, Eigen::Vector2f(1.0F, 2.0F));
    EXPECT_EQ(folded.layers[1].bias, Eigen::Vector2f(8.0F, 9.0F));
}

/// Pieces of one sequence through a pass, and the sequence as a stream through the folded network.
TEST(TrainingNetwork, FoldedAndStreamingItGivesTheOutputsOfThePassForThePassesStatistics)
{
    constexpr int Outputs = 6;
    constexpr int Step = 3;
    constexpr Eigen::Index Starts[] = {0, 22};
    RandomStream random(3);
    Learning learning(TimeDelayShapes(4), &random);
    // Gains and shifts other than those at the start.
    learning.Parameters() += 0.1F * RandomMatrix(learning.Parameters().size(), 1, &random);

    TrainingPass pass(learning, 2, Outputs, Step);
    const Eigen::MatrixXf sequence = RandomMatrix(MelChannels, Starts[1] + pass.CropFrames(), &random);
    for (int crop = 0; crop < 2; ++crop)
    {
        pass.SetCrop(crop, sequence.middleCols(Starts[crop], pass.CropFrames()));
    }
    const Eigen::MatrixXf outputs = pass.Forward(DroppingRectifier(0.0), &random);
    std::vector<RowStatistics> statistics;
    for (std::size_t layer = 0; layer < 4; ++layer)
    {
        statistics.push_back({pass.Normalization(layer).Mean(), pass.Normalization(layer).Variance()});
    }

    const Network folded = learning.Fold(statistics);
    StreamingNetwork streaming(folded);
    std::vector<Eigen::VectorXf> streamed;
    for (Eigen::Index i = 0; i < sequence.cols(); ++i)
    {
        MelFrame frame;
        Eigen::Map<Eigen::VectorXf>(frame.data(), MelChannels) = sequence.col(i);
        const Eigen::VectorXf* const result = streaming.Push(frame);
        ASSERT_EQ(result != nullptr, i >= 34);
        if (result != nullptr)
        {
            streamed.push_back(*result);
        }
    }
    for (int crop = 0; crop < 2; ++crop)
    {
        for (int i = 0; i < Outputs; ++i)
        {
            SCOPED_TRACE(testing::Message() << "crop " << crop << ", output " << i);
            Eigen::VectorXf expected = outputs.col(i * 2 + crop);
            LogSoftmax(&expected);
            const Eigen::VectorXf& actual = streamed[static_cast<std::size_t>(Starts[crop] + i * Step)];
            EXPECT_LT((actual - expected).cwiseAbs().maxCoeff(), 1e-4F) << actual.transpose() << "\n" << expected.transpose();
        }
    }
}

} // namespace TrainingNetworkTests

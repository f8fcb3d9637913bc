#include "engine/listening/StreamingNetwork.h"

#include <gmock/gmock.h>

#include <cmath>
#include <optional>

namespace StreamingNetworkTests
{

using testing::ElementsAre;
using testing::FloatNear;
using velox::engine::LogSoftmax;
using velox::engine::MelChannels;
using velox::engine::MelFrame;
using velox::engine::Network;
using velox::engine::NetworkLayer;
using Stream = velox::engine::StreamingNetwork;

/// A first layer that looks at two channels only. Each row holds, for each tap, the weights of the first and the last channel.
NetworkLayer FirstLayer(int kernel, int dilation, const Eigen::MatrixXf& taps, const Eigen::VectorXf& bias)
{
    constexpr auto Channels = static_cast<Eigen::Index>(MelChannels);
    NetworkLayer layer{kernel, dilation, Eigen::MatrixXf::Zero(taps.rows(), kernel * Channels), bias};
    for (Eigen::Index k = 0; k < kernel; ++k)
    {
        layer.weights.col(k * Channels) = taps.col(2 * k);
        layer.weights.col((k + 1) * Channels - 1) = taps.col(2 * k + 1);
    }
    return layer;
}

/// Pushes a frame with these first and last channels; the difference of the two log posteriors is that of the outputs.
std::optional<float> PushDifference(Stream* network, float first, float last)
{
    MelFrame frame{};
    frame.front() = first;
    frame.back() = last;
    const Eigen::VectorXf* const outputs = network->Push(frame);
    return outputs == nullptr ? std::nullopt : std::optional((*outputs)[0] - (*outputs)[1]);
}

TEST(StreamingNetwork, ConvolvesFramesADilationApartOldestFirst)
{
    const Eigen::MatrixXf taps{{1.0F, 2.0F, 10.0F, 20.0F}, {0.0F, 0.0F, 0.0F, 0.0F}};
    const Network network{{FirstLayer(2, 2, taps, Eigen::Vector2f(0.5F, 0.0F))}};
    Stream streaming(network);

    EXPECT_EQ(PushDifference(&streaming, 1.0F, 5.0F), std::nullopt);
    EXPECT_EQ(PushDifference(&streaming, 2.0F, 6.0F), std::nullopt);
    // 1 * 1 + 2 * 5 + 10 * 3 + 20 * 7 + 0.5
    EXPECT_EQ(PushDifference(&streaming, 3.0F, 7.0F), 181.5F);
    EXPECT_EQ(PushDifference(&streaming, 4.0F, 8.0F), 214.5F);
    // The ring has wrapped round: 1 * 3 + 2 * 7 + 10 * 0 + 20 * 1 + 0.5
    EXPECT_EQ(PushDifference(&streaming, 0.0F, 1.0F), 37.5F);
}

TEST(StreamingNetwork, RectifiesBetweenLayersButNotTheOutputs)
{
    const NetworkLayer first = FirstLayer(1, 1, Eigen::MatrixXf{{1.0F, 0.0F}, {0.0F, 1.0F}}, Eigen::Vector2f::Zero());
    const NetworkLayer second{2, 1, Eigen::MatrixXf{{1.0F, -1.0F, 10.0F, -10.0F}, {0.0F, 0.0F, 0.0F, 0.0F}},
                              Eigen::Vector2f::Zero()};
    const Network network{{first, second}};
    Stream streaming(network);

    EXPECT_EQ(PushDifference(&streaming, 2.0F, -3.0F), std::nullopt);
    // The first frame counts as (2, 0), the second one as (0, 5).
    EXPECT_EQ(PushDifference(&streaming, -4.0F, 5.0F), -48.0F);
    EXPECT_EQ(PushDifference(&streaming, 1.0F, 1.0F), -5.0F);
}

TEST(StreamingNetwork, OutputsAreLogarithmsOfPosteriors)
{
    const Network network{{FirstLayer(1, 1, Eigen::MatrixXf{{1.0F, 0.0F}, {0.0F, 1.0F}, {0.0F, 0.0F}}, Eigen::Vector3f::Zero())}};
    Stream streaming(network);
    MelFrame frame{};
    frame.front() = std::log(2.0F);
    const Eigen::VectorXf* const outputs = streaming.Push(frame);
    ASSERT_NE(outputs, nullptr);
    EXPECT_THAT(
        std::vector<float>(outputs->begin(), outputs->end()),
        ElementsAre(FloatNear(std::log(0.5F), 1e-6F), FloatNear(std::log(0.25F), 1e-6F), FloatNear(std::log(0.25F), 1e-6F)));
}

TEST(StreamingNetwork, TwoStreamsOfOneNetworkDoNotDisturbEachOther)
{
    const Network network{
        {FirstLayer(2, 1, Eigen::MatrixXf{{1.0F, 0.0F, 10.0F, 0.0F}, {0.0F, 0.0F, 0.0F, 0.0F}}, Eigen::Vector2f::Zero())}};
    Stream one(network);
    Stream other(network);
    EXPECT_EQ(PushDifference(&one, 1.0F, 0.0F), std::nullopt);
    EXPECT_EQ(PushDifference(&other, 5.0F, 0.0F), std::nullopt);
    EXPECT_EQ(PushDifference(&one, 2.0F, 0.0F), 21.0F);
    EXPECT_EQ(PushDifference(&other, 6.0F, 0.0F), 65.0F);
}

TEST(StreamingNetwork, LogSoftmaxOfLargeOutputsStaysFinite)
{
    Eigen::VectorXf outputs = Eigen::Vector3f(1000.0F, 1000.0F, -1000.0F);
    LogSoftmax(&outputs);
    EXPECT_NEAR(outputs[0], std::log(0.5F), 1e-4F);
    EXPECT_NEAR(outputs[1], std::log(0.5F), 1e-4F);
    EXPECT_NEAR(outputs[2], -2000.0F, 1.0F);

    outputs = Eigen::VectorXf::Constant(4, -1e30F);
    LogSoftmax(&outputs);
    EXPECT_TRUE(outputs.allFinite());
}

} // namespace StreamingNetworkTests

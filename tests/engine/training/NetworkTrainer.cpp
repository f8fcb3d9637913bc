#include "engine/training/NetworkTrainer.h"

#include "engine/listening/StreamingNetwork.h"
#include "tests/engine/support/GradientCheck.h"

#include <gmock/gmock.h>

#include <stdexcept>
#include <thread>

namespace NetworkTrainerTests
{

using testing::DoubleEq;
using testing::ElementsAre;
using velox::engine::MelChannels;
using velox::engine::MelFrame;
using velox::engine::Network;
using velox::engine::NetworkTrainerOptions;
using velox::engine::RandomStream;
using velox::engine::StreamingNetwork;
using velox::engine::TrainingSequence;
using velox::engine::TrainNetwork;

constexpr int States = 2;
constexpr Eigen::Index StateFrames = 12;

bool GoOn(double)
{
    return true;
}

/// Noise; in a take, the first state lifts the low channels and the second one the high ones.
TrainingSequence Sequence(bool isTake, Eigen::Index frames, RandomStream* random)
{
    TrainingSequence sequence{RandomMatrix(MelChannels, frames, random),
                              std::vector<int>(static_cast<std::size_t>(frames), States), 1.0F, isTake};
    for (Eigen::Index i = 0; isTake && i < States * StateFrames; ++i)
    {
        const Eigen::Index state = i / StateFrames;
        const Eigen::Index frame = frames / 3 + i;
        sequence.features.col(frame).segment(state * 20, 20).array() += 2.0F;
        sequence.labels[static_cast<std::size_t>(frame)] = static_cast<int>(state);
    }
    return sequence;
}

class NetworkTrainer : public testing::Test
{
protected:
    NetworkTrainer()
    {
        for (int i = 0; i < 6; ++i)
        {
            sequences.push_back(Sequence(i < 4, 70 + 10 * i, &random));
        }
        options.states = States;
        options.batches = 4;
        options.batchSize = 6;
        options.slices = 3;
        options.cropFrames = 30;
    }

    std::vector<TrainingSequence> sequences;
    NetworkTrainerOptions options;
    std::thread::id caller = std::this_thread::get_id();
    RandomStream random{1};
};

void ExpectSame(const Network& one, const Network& other)
{
    ASSERT_EQ(one.layers.size(), other.layers.size());
    for (std::size_t i = 0; i < one.layers.size(); ++i)
    {
        EXPECT_EQ(one.layers[i].weights, other.layers[i].weights) << i;
        EXPECT_EQ(one.layers[i].bias, other.layers[i].bias) << i;
    }
}

/// Share of frames whose most likely class is the labelled one.
double ShareRight(const Network& network, const TrainingSequence& sequence)
{
    StreamingNetwork streaming(network);
    int right = 0;
    int all = 0;
    for (Eigen::Index i = 0; i < sequence.Frames(); ++i)
    {
        MelFrame frame;
        Eigen::Map<Eigen::VectorXf>(frame.data(), MelChannels) = sequence.features.col(i);
        if (const Eigen::VectorXf* const outputs = streaming.Push(frame))
        {
            int best = 0;
            outputs->maxCoeff(&best);
            right += best == sequence.labels[static_cast<std::size_t>(i - network.LookAhead())] ? 1 : 0;
            ++all;
        }
    }
    return static_cast<double>(right) / all;
}

TEST_F(NetworkTrainer, LearnsToTellStatesAndBackgroundApart)
{
    options.batches = 60;
    options.threads = 2;
    const std::optional<Network> network = TrainNetwork(sequences, options, GoOn);
    ASSERT_TRUE(network);
    EXPECT_EQ(network->Field(), 35);
    for (const bool isTake : {true, false})
    {
        SCOPED_TRACE(isTake);
        EXPECT_GT(ShareRight(*network, Sequence(isTake, 150, &random)), 0.93);
    }
}

TEST_F(NetworkTrainer, TheResultIsTheSameWithAnyNumberOfThreads)
{
    const std::optional<Network> one = TrainNetwork(sequences, options, GoOn);
    for (const int threads : {2, 3, 8})
    {
        SCOPED_TRACE(threads);
        options.threads = threads;
        ExpectSame(TrainNetwork(sequences, options, GoOn).value(), one.value());
    }
}

TEST_F(NetworkTrainer, AnotherSeedGivesAnotherNetwork)
{
    const std::optional<Network> one = TrainNetwork(sequences, options, GoOn);
    options.seed = 2;
    const std::optional<Network> other = TrainNetwork(sequences, options, GoOn);
    EXPECT_NE(one->layers.front().weights, other->layers.front().weights);
}

TEST_F(NetworkTrainer, TellsItsProgressAfterEachStepOnTheCallersThread)
{
    std::vector<double> shares;
    TrainNetwork(sequences, options, [&](double share) {
        EXPECT_EQ(std::this_thread::get_id(), caller);
        shares.push_back(share);
        return true;
    });
    EXPECT_THAT(shares, ElementsAre(DoubleEq(0.25), DoubleEq(0.5), DoubleEq(0.75), DoubleEq(1.0)));
}

TEST_F(NetworkTrainer, GivesNothingOnceItIsCancelled)
{
    for (const int lastCall : {1, 3, 4})
    {
        SCOPED_TRACE(lastCall);
        int calls = 0;
        options.threads = 2;
        EXPECT_EQ(TrainNetwork(sequences, options, [&](double) { return ++calls < lastCall; }).has_value(), false);
        EXPECT_EQ(calls, lastCall);
    }
}

TEST_F(NetworkTrainer, LetsAnExceptionOfTheCallbackThrough)
{
    options.threads = 2;
    EXPECT_THROW(TrainNetwork(sequences, options, [](double) -> bool { throw std::runtime_error("enough"); }),
                 std::runtime_error);
}

TEST_F(NetworkTrainer, AtLeastTwelveCropsAreNormalisedTogether)
{
    const NetworkTrainerOptions usual;
    EXPECT_GE(usual.batchSize / usual.slices, 12);
}

TEST_F(NetworkTrainer, NothingToDrawFromIsRefused)
{
    EXPECT_THROW(TrainNetwork({}, options, GoOn), std::invalid_argument);
}

} // namespace NetworkTrainerTests

#include "engine/models/SpeakerModel.h"

#include <gmock/gmock.h>

#include <array>

namespace
{

using namespace velox::engine;
using Model = velox::engine::SpeakerModel;

/// One component in one dimension, variance 1. The log ratio of means a and b at x is (x - b)^2 / 2 - (x - a)^2 / 2.
GaussianMixture At(float mean)
{
    return {Eigen::VectorXf::Ones(1), Eigen::MatrixXf::Constant(1, 1, mean), Eigen::MatrixXf::Ones(1, 1)};
}

TEST(SpeakerModel, LogRatioIsTheMeanOfTheStatesMeans)
{
    const Model model{{At(0.0F), At(0.0F)}, {At(1.0F), At(2.0F)}, 0.0F};
    Eigen::MatrixXf frames(1, 3);
    frames << 1.0F, 0.0F, 1.5F;
    // State 0: (0.5 - 0.5) / 2 = 0, from x = 1 (+0.5) and x = 0 (-0.5). State 1: 1.125 - 0.125 = 1 at x = 1.5.
    EXPECT_NEAR(model.LogRatio(frames, std::array{2, 1}), 0.5F, 1e-5F);
    // With the border one frame earlier: state 0 0.5; state 1 the mean of -2 and 1.
    EXPECT_NEAR(model.LogRatio(frames, std::array{1, 2}), (0.5F - 0.5F) / 2.0F, 1e-5F);
}

TEST(SpeakerModel, OneFrameCannotDecide)
{
    const Model model{{At(0.0F)}, {At(10.0F)}, 0.0F};
    Eigen::MatrixXf frames(1, 2);
    frames << 10.0F, 10.0F;
    EXPECT_FLOAT_EQ(model.LogRatio(frames, std::array{2}), Model::MostRatio);
    frames << -10.0F, -10.0F;
    EXPECT_FLOAT_EQ(model.LogRatio(frames, std::array{2}), -Model::MostRatio);
}

TEST(SpeakerModel, AdaptationMovesEachStateByItsOwnFrames)
{
    PhraseFrames take;
    take.frames.resize(1, 6);
    take.frames << 5.0F, 5.0F, 5.0F, 5.0F, -3.0F, -3.0F;
    take.counts = {4, 2};
    const GenericSpeakers generic{{At(0.0F), At(0.0F)}};
    const Model model = TrainSpeaker(generic, std::vector{take});
    // (sum + relevance * prior) / (count + relevance), relevance 4.
    EXPECT_FLOAT_EQ(model.user[0].Means()(0, 0), 20.0F / 8.0F);
    EXPECT_FLOAT_EQ(model.user[1].Means()(0, 0), -6.0F / 6.0F);
    EXPECT_EQ(model.generic[0].Means()(0, 0), 0.0F);
}

TEST(SpeakerModel, CopiesCountTheirShare)
{
    PhraseFrames copy;
    copy.frames = Eigen::MatrixXf::Constant(1, 16, 2.0F);
    copy.counts = {16};
    copy.share = Model::CopyShare;
    const Model model = TrainSpeaker({{At(0.0F)}}, std::vector{copy});
    EXPECT_FLOAT_EQ(model.user[0].Means()(0, 0), 4.0F * 2.0F / (4.0F + 4.0F));
}

TEST(SpeakerModel, GenericStatesStartFromTheBackground)
{
    PhraseFrames take;
    take.frames = Eigen::MatrixXf::Constant(1, 16, 3.0F);
    take.counts = {16, 0};
    const GenericSpeakers generic = TrainGenericSpeakers(At(1.0F), std::vector{take}, 2);
    EXPECT_FLOAT_EQ(generic.states[0].Means()(0, 0), (48.0F + 16.0F) / 32.0F);
    EXPECT_FLOAT_EQ(generic.states[1].Means()(0, 0), 1.0F);
}

} // namespace

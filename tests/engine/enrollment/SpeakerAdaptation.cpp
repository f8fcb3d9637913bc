#include "engine/enrollment/SpeakerAdaptation.h"

#include <gmock/gmock.h>

namespace SpeakerAdaptationTests
{

using namespace velox::engine;

/// One component in one dimension, variance 1. The log ratio of means a and b at x is (x - b)^2 / 2 - (x - a)^2 / 2.
GaussianMixture At(float mean)
{
    return {Eigen::VectorXf::Ones(1), Eigen::MatrixXf::Constant(1, 1, mean), Eigen::MatrixXf::Ones(1, 1)};
}

TEST(SpeakerAdaptation, AdaptationMovesEachStateByItsOwnFrames)
{
    PhraseFrames take;
    take.frames.resize(1, 6);
    take.frames << 5.0F, 5.0F, 5.0F, 5.0F, -3.0F, -3.0F;
    take.counts = {4, 2};
    const GenericSpeakers generic{{At(0.0F), At(0.0F)}};
    const SpeakerModel model = TrainSpeaker(generic, std::vector{take});
    // (sum + relevance * prior) / (count + relevance), relevance 4.
    EXPECT_FLOAT_EQ(model.user[0].Means()(0, 0), 20.0F / 8.0F);
    EXPECT_FLOAT_EQ(model.user[1].Means()(0, 0), -6.0F / 6.0F);
    EXPECT_EQ(model.generic[0].Means()(0, 0), 0.0F);
}

TEST(SpeakerAdaptation, FramesCountTheirShare)
{
    PhraseFrames copy;
    copy.frames = Eigen::MatrixXf::Constant(1, 16, 2.0F);
    copy.counts = {16};
    copy.share = 0.25F;
    const SpeakerModel model = TrainSpeaker({{At(0.0F)}}, std::vector{copy});
    EXPECT_FLOAT_EQ(model.user[0].Means()(0, 0), 4.0F * 2.0F / (4.0F + 4.0F));
}

TEST(SpeakerAdaptation, GenericStatesStartFromTheBackground)
{
    PhraseFrames take;
    take.frames = Eigen::MatrixXf::Constant(1, 16, 3.0F);
    take.counts = {16, 0};
    const GenericSpeakers generic = TrainGenericSpeakers(At(1.0F), std::vector{take}, 2);
    EXPECT_FLOAT_EQ(generic.states[0].Means()(0, 0), (48.0F + 16.0F) / 32.0F);
    EXPECT_FLOAT_EQ(generic.states[1].Means()(0, 0), 1.0F);
}

} // namespace SpeakerAdaptationTests

#include "engine/listening/SpeakerRatio.h"

#include "engine/sound/Cepstrum.h"
#include "tests/engine/support/Signals.h"
#include "tests/engine/support/TinyLanguage.h"

#include <gmock/gmock.h>

#include <array>

namespace SpeakerRatioTests
{

using namespace velox::engine;

/// One component in one dimension, variance 1. The log ratio of means a and b at x is (x - b)^2 / 2 - (x - a)^2 / 2.
GaussianMixture At(float mean)
{
    return {Eigen::VectorXf::Ones(1), Eigen::MatrixXf::Constant(1, 1, mean), Eigen::MatrixXf::Ones(1, 1)};
}

TEST(SpeakerRatio, IsTheMeanOfTheStatesMeans)
{
    const SpeakerModel model{{At(0.0F), At(0.0F)}, {At(1.0F), At(2.0F)}, 0.0F};
    Eigen::MatrixXf frames(1, 3);
    frames << 1.0F, 0.0F, 1.5F;
    // State 0: (0.5 - 0.5) / 2 = 0, from x = 1 (+0.5) and x = 0 (-0.5). State 1: 1.125 - 0.125 = 1 at x = 1.5.
    EXPECT_NEAR(velox::engine::SpeakerRatio(model, frames, std::array{2, 1}), 0.5F, 1e-5F);
    // With the border one frame earlier: state 0 0.5; state 1 the mean of -2 and 1.
    EXPECT_NEAR(velox::engine::SpeakerRatio(model, frames, std::array{1, 2}), (0.5F - 0.5F) / 2.0F, 1e-5F);
}

TEST(SpeakerRatio, OneFrameCannotDecide)
{
    const SpeakerModel model{{At(0.0F)}, {At(10.0F)}, 0.0F};
    Eigen::MatrixXf frames(1, 2);
    frames << 10.0F, 10.0F;
    EXPECT_FLOAT_EQ(velox::engine::SpeakerRatio(model, frames, std::array{2}), MostSpeakerRatio);
    frames << -10.0F, -10.0F;
    EXPECT_FLOAT_EQ(velox::engine::SpeakerRatio(model, frames, std::array{2}), -MostSpeakerRatio);
}

TEST(SpeakerRatio, StretchesHaveTheCepstraOfTheTraining)
{
    const std::vector<MelFrame> features = Signals::LogMel(TinyLanguage::SayPhrase());
    EXPECT_TRUE(SpeakerFrames(features).isApprox(WithDeltas(Cepstra(features)), 1e-4F));
}

} // namespace SpeakerRatioTests

#pragma once

#include "engine/models/SpeakerModel.h"
#include "engine/sound/MelFilterbank.h"

#include <cstdint>
#include <span>

namespace velox::engine
{

/// Bounds of one frame's log ratio: a few frames must not decide.
inline constexpr float MostSpeakerRatio = 3.0F;

/// Cepstra of a stretch of features, for the speaker part.
Eigen::MatrixXf SpeakerFrames(std::span<const MelFrame> features);

/// Mean over the states of the mean over their frames of the bounded log ratio of user and everybody. Allocates nothing.
/// @param frames  CepstralFrameSize x frames, the phrase from its first frame to its last
/// @param counts  frames in each state, together all of them
float SpeakerRatio(const SpeakerModel& speaker, const Eigen::Ref<const Eigen::MatrixXf>& frames, std::span<const int32_t> counts);

} // namespace velox::engine

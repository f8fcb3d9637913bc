#pragma once

#include "engine/models/SpeakerModel.h"

#include <cstdint>
#include <span>

namespace velox::engine
{

/// One stretch of audio with the phrase, cut into its states.
struct PhraseFrames
{
    Eigen::MatrixXf frames;      ///< CepstralFrameSize x frames
    std::vector<int32_t> counts; ///< frames in each state
    float share = 1.0F;          ///< what one of its frames counts
};

/// Adapts a background mixture to each state of takes of many speakers.
GenericSpeakers TrainGenericSpeakers(const GaussianMixture& background, std::span<const PhraseFrames> takes, std::size_t states);

/// Adapts everybody's mixtures to a user's takes and their copies. The threshold is left for the caller to set.
SpeakerModel TrainSpeaker(const GenericSpeakers& generic, std::span<const PhraseFrames> takes);

} // namespace velox::engine

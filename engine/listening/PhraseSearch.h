#pragma once

#include "engine/listening/Decoder.h"
#include "engine/models/PhraseModel.h"

#include <optional>
#include <span>

namespace velox::engine
{

/// The best place of the phrase in a recording, threshold or not: the first stage over a whole recording, for training.
struct PhrasePlace
{
    float score = 0.0F; ///< of the decoder
    PhrasePath path;
    std::vector<MelFrame> features; ///< from the path's first frame to its last
};

/// @param warp  of the mel scale
/// @return nothing when the recording is shorter than the phrase can be
std::optional<PhrasePlace> FindPhrase(const PhraseModel& model, std::span<const float> recording, double warp = 1.0);

/// The highest places of successive stretches of a recording, in the decoder's score.
/// @param stretchSeconds  length of a stretch
std::vector<PhrasePlace> FindPeaks(const PhraseModel& model, std::span<const float> recording, double stretchSeconds);

/// All analysed frames of a recording; its last incomplete frame is filled with zeros.
std::vector<MelFrame> AnalyseRecording(const FeatureStatistics& statistics, std::span<const float> recording, double warp);

} // namespace velox::engine

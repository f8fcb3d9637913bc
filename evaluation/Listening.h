#pragma once

#include "engine/base/WorkerPool.h"
#include "engine/listening/PhraseDetector.h"
#include "evaluation/Condition.h"
#include "evaluation/Corpus.h"

#include <optional>
#include <span>
#include <vector>

namespace velox::evaluation
{

/// Every peak that a detector reports in a recording, silence behind it included so that the last one is confirmed.
std::vector<engine::Detection> Listen(const engine::PhraseModel& model, std::span<const float> recording);

/// The detection with the highest score in a recording; score 0 when nothing was detected.
engine::Detection BestIn(const engine::PhraseModel& model, std::span<const float> recording);

/// A clip and the best detection in it.
struct Outcome
{
    const Clip* clip = nullptr;
    engine::Detection best; ///< as BestIn
};

/// @param listener  run and user, so that each has noise of its own
std::vector<Outcome> ListenToClips(const engine::PhraseModel& model, const std::vector<Clip>& clips, const Condition& condition,
                                   uint64_t listener, engine::WorkerPool* pool);

/// Scores of all detections in background, highest first. The recordings follow one another, as a stream.
std::vector<float> ListenToBackground(const engine::PhraseModel& model, const std::vector<Clip>& background,
                                      engine::WorkerPool* pool);

} // namespace velox::evaluation

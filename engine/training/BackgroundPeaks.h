#pragma once

#include "engine/base/WorkerPool.h"
#include "engine/listening/PhraseSearch.h"

namespace velox::engine
{

/// The highest places of successive stretches of the background, in which nobody says the phrase.
std::vector<PhrasePlace> FindBackgroundPeaks(const PhraseModel& model, std::span<const std::span<const float>> background,
                                             WorkerPool* pool);

} // namespace velox::engine

#pragma once

#include "engine/base/WorkerPool.h"
#include "engine/listening/PhraseSearch.h"
#include "engine/models/AcousticModel.h"

namespace velox::engine
{

/// The highest places of successive stretches of the background, in which nobody says the phrase.
std::vector<PhrasePlace> FindBackgroundPeaks(const PhraseModel& model, std::span<const std::span<const float>> background,
                                             WorkerPool* pool);

/// The highest of the peaks.
/// @param hours  of background that they were found in
Population MakePopulation(const PhraseModel& model, std::vector<PhrasePlace> peaks, double hours);

} // namespace velox::engine

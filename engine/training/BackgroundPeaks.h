#pragma once

#include "engine/base/WorkerPool.h"
#include "engine/listening/PhraseSearch.h"
#include "engine/models/AcousticModel.h"

namespace velox::engine
{

/// The highest places of successive stretches of the background, in which nobody says the phrase.
std::vector<PhrasePlace> FindBackgroundPeaks(const PhraseModel& model, const std::vector<std::vector<float>>& background,
                                             WorkerPool* pool);

/// Where the tail of background that the network never heard starts, from the peaks of background that it learned from.
BackgroundTail MeasureTail(const std::vector<PhrasePlace>& peaks);

/// The highest of the peaks.
/// @param hours  of background that they were found in
Population MakePopulation(std::vector<PhrasePlace> peaks, double hours);

} // namespace velox::engine

#pragma once

#include "engine/sound/FeatureStream.h"
#include "engine/training/TakePreparation.h"

namespace velox::engine
{

/// Measures in background and takes where the running mean of the channels starts, and mean and deviation of what is left when it
/// is taken off.
FeatureStatistics MeasureStatistics(const std::vector<std::vector<float>>& background, const std::vector<PreparedTake>& takes);

} // namespace velox::engine

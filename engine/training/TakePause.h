#pragma once

#include "engine/base/RandomStream.h"
#include "engine/enrollment/Augmentation.h"
#include "engine/training/TakePreparation.h"

#include <optional>
#include <vector>

namespace velox::engine
{

/// Draws a pause for a fifth of the copies of a take: 0.05 to 0.35 s where it is quietest, the outer quarters of the phrase
/// aside.
std::optional<Pause> DrawPause(const PreparedTake& take, RandomStream* random);

/// The labels of a take with a pause: it belongs to the state that was before.
/// @param labels  of the take's frames
std::vector<int> LabelsWithPause(const std::vector<int>& labels, const Pause& pause);

} // namespace velox::engine

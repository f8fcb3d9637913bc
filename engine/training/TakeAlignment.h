#pragma once

#include "engine/enrollment/Alignment.h"
#include "engine/models/StateModel.h"
#include "engine/training/TakePreparation.h"

namespace velox::engine
{

/// Finds which frame of each take belongs to which state.
/// @throws std::invalid_argument when every take is too short
PhraseAlignment AlignPreparedTakes(const std::vector<PreparedTake>& takes, uint64_t seed);

/// What the decoder knows of the states.
StateModel StatesOf(const PhraseAlignment& alignment);

} // namespace velox::engine

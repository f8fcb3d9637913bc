#pragma once

#include "engine/models/PhraseModel.h"
#include "engine/training/PhrasePlaces.h"

namespace velox::engine
{

/// Teaches the second stage what damaged takes look like, and sets its cut so that next to no take of the training is refused.
/// @param model  with the tail measured: only what the first stage lets through is worth learning from
NearPhraseCheck TrainNearCheck(const PhraseModel& model, const PhrasePlaces& places);

} // namespace velox::engine

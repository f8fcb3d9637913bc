#pragma once

#include "engine/models/PhraseModel.h"
#include "engine/training/HeldOutSearch.h"

namespace velox::engine
{

/// Measures the tails of a model's search and judge on background that it never heard. It heard all there is: its own
/// background's tails are moved by as much as those of the halves' networks differ between what they did not hear and what they
/// did.
///
/// @param heard     peaks of the model's own search, all of the background
/// @param heldOut   of the networks that learned from a half each
/// @param model     with the judge; receives the tails
void CalibrateTails(const std::vector<PhrasePlace>& heard, const HeldOutPlaces& heldOut, PhraseModel* model);

/// The judge's word on each take by the network that had not heard its voice, beside that network's tail on unheard background
/// with the model's slope, in factors e of the false-alarm rate below half an alarm per hour; very low for one that is too short.
std::vector<float> JudgeHeldOutTakes(const HeldOutPlaces& heldOut, const PhraseModel& model);

} // namespace velox::engine

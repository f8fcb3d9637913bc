#pragma once

#include "engine/models/PhraseModel.h"
#include "engine/training/HeldOutSearch.h"

namespace velox::engine
{

/// Measures the tails of a model's search and judge on the background that it learned from, and moves them by as much as what no
/// network heard usually scores higher. Networks of half the material tell nothing of that: they learn for too short a time.
///
/// @param heard  peaks of the model's search, all of the background
/// @param model  with the judge; receives the tails
void CalibrateTails(const std::vector<PhrasePlace>& heard, PhraseModel* model);

/// The judge's word on each take by the network that had not heard its voice, beside that network's tail on unheard background
/// with the model's slope, in factors e of the false-alarm rate below half an alarm per hour; very low for one that is too short.
std::vector<float> JudgeHeldOutTakes(const HeldOutPlaces& heldOut, const PhraseModel& model);

} // namespace velox::engine

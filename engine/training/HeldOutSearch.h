#pragma once

#include "engine/training/PhrasePlaces.h"

namespace velox::engine
{

/// What networks that learned from one half of the material each find in the other half.
struct HeldOutPlaces
{
    PhrasePlaces phrases;                ///< takes and copies by their numbers
    std::vector<PhrasePlace> damaged;    ///< takes
    std::vector<PhrasePlace> background; ///< peaks
};

/// What is searched, and how it falls into halves.
struct SearchedMaterial
{
    const std::vector<PreparedTake>& takes;
    const PhraseAlignment& alignment;
    const std::vector<AugmentationPlan>& plans; ///< of the copies
    const std::vector<std::vector<float>>& background;
    const Folds& folds;
    uint64_t seed;
};

/// @param model   with the network that learned from everything but `fold`
/// @param places  receives what it finds, beside what the other half's network found
void SearchHeldOut(const PhraseModel& model, int fold, const SearchedMaterial& material, WorkerPool* pool, HeldOutPlaces* places);

} // namespace velox::engine

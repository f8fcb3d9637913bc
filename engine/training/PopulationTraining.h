#pragma once

#include "engine/models/Population.h"
#include "engine/training/PhrasePlaces.h"

namespace velox::engine
{

/// What a population is made of.
struct PopulationMaterial
{
    std::vector<PhrasePlace> peaks; ///< of the background
    double hours;                   ///< of background
    const std::vector<PreparedTake>& takes;
    const std::vector<PhrasePlace>& places; ///< of the phrase in the takes, by their numbers
    const std::vector<float>& factors;      ///< the judge's word on these places
    const std::vector<std::vector<float>>& background;
};

/// Keeps those of the peaks that the judge takes for the phrase most, a take of each voice, and pieces of background from all
/// over it.
Population MakePopulation(const PhraseModel& model, PopulationMaterial material);

} // namespace velox::engine

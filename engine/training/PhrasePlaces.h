#pragma once

#include "engine/base/WorkerPool.h"
#include "engine/enrollment/Alignment.h"
#include "engine/listening/PhraseSearch.h"
#include "engine/training/NoisyCopy.h"
#include "engine/training/TakePreparation.h"

namespace velox::engine
{

/// Where the trained network finds the phrase. A place without features stands for a take that was too short.
struct PhrasePlaces
{
    std::vector<PhrasePlace> takes;   ///< the clean takes
    std::vector<PhrasePlace> copies;  ///< their noisy copies
    std::vector<PhrasePlace> damaged; ///< takes with a part replaced or cut out
};

/// @param background  what parts of takes are replaced by
PhrasePlaces FindPhrasePlaces(const PhraseModel& model, const std::vector<PreparedTake>& takes, const PhraseAlignment& alignment,
                              const std::vector<NoisyCopy>& copies, const std::vector<std::vector<float>>& background,
                              uint64_t seed, WorkerPool* pool);

} // namespace velox::engine

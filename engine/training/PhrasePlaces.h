#pragma once

#include "engine/base/WorkerPool.h"
#include "engine/enrollment/Alignment.h"
#include "engine/enrollment/Augmentation.h"
#include "engine/listening/PhraseSearch.h"
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

/// @param plans       of the copies, as many for each take
/// @param background  what the copies were made with, and what parts of takes are replaced by
PhrasePlaces FindPhrasePlaces(const PhraseModel& model, const std::vector<PreparedTake>& takes, const PhraseAlignment& alignment,
                              const std::vector<AugmentationPlan>& plans, const std::vector<std::vector<float>>& background,
                              uint64_t seed, WorkerPool* pool);

} // namespace velox::engine

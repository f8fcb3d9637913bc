#pragma once

#include "engine/base/WorkerPool.h"
#include "engine/enrollment/Alignment.h"
#include "engine/enrollment/Augmentation.h"
#include "engine/listening/PhraseSearch.h"
#include "engine/training/Folds.h"
#include "engine/training/TakePreparation.h"

namespace velox::engine
{

/// Where a network finds the phrase. A place without features stands for a take that was too short.
struct PhrasePlaces
{
    std::vector<PhrasePlace> takes;  ///< the clean takes
    std::vector<PhrasePlace> copies; ///< their noisy copies
};

/// What the phrase is looked for in.
struct PhraseRecordings
{
    const std::vector<PreparedTake>& takes;
    const PhraseAlignment& alignment;
    const std::vector<AugmentationPlan>&
        plans; ///< of the copies, as many of each take, all of the first, then of the second, and so on
    const std::vector<std::vector<float>>& background; ///< that copies and near phrases are made with
    std::vector<std::size_t> wanted;                   ///< numbers of the takes; the others' places are left as they are
};

/// @param places  receives those of the takes wanted, at the takes' and copies' own numbers
void FindPhrasePlaces(const PhraseModel& model, const PhraseRecordings& recordings, WorkerPool* pool, PhrasePlaces* places);

/// The phrase in the damaged copies of each take wanted.
std::vector<PhrasePlace> FindDamagedPlaces(const PhraseModel& model, const PhraseRecordings& recordings, uint64_t seed,
                                           WorkerPool* pool);

} // namespace velox::engine

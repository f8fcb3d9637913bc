#pragma once

#include "engine/base/WorkerPool.h"
#include "engine/enrollment/Alignment.h"
#include "engine/enrollment/Augmentation.h"
#include "engine/sound/FeatureStream.h"
#include "engine/training/Folds.h"
#include "engine/training/LanguageOptions.h"
#include "engine/training/TakePreparation.h"
#include "engine/training/TrainingSequence.h"

namespace velox::engine
{

/// What the network learns from.
struct TrainingMaterial
{
    /// Of the takes' copies, all of the first's, then all of the second's, and so on. The copies themselves would take a hundred
    /// times the takes' room; they are made again where they are needed.
    std::vector<AugmentationPlan> plans;
    std::vector<TrainingSequence> sequences;
};

/// Makes the noisy copies and the features that the network learns from. Every copy has a random stream of its own, so that the
/// work can be shared out.
TrainingMaterial MakeTrainingMaterial(const std::vector<PreparedTake>& takes, const PhraseAlignment& alignment,
                                      const FeatureStatistics& statistics, const std::vector<std::vector<float>>& background,
                                      const Folds& folds, const LanguageOptions& options, WorkerPool* pool);

} // namespace velox::engine

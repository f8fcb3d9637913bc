#pragma once

#include "engine/training/TrainingProgress.h"

#include <cstdint>

namespace velox::engine
{

/// How a language is learned.
struct LanguageOptions
{
    double falseAlarmsPerHour = 0.5;
    int copies = 10;          ///< noisy copies of each take
    int backgroundCopies = 2; ///< noisy copies of the background
    int batches = 3500;       ///< steps of the network's training; those that learn from half take a third as many
    int batchSize = 24;       ///< crops in a step; a multiple of 4: two slices of takes and others
    uint64_t seed = 1;
    int threads = 1; ///< the result does not depend on it
    TrainingProgress progress = [](double) {
        return true;
    };
};

} // namespace velox::engine

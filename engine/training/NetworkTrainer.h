#pragma once

#include "engine/models/Network.h"
#include "engine/training/Folds.h"
#include "engine/training/TrainingProgress.h"
#include "engine/training/TrainingSequence.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace velox::engine
{

struct NetworkTrainerOptions
{
    int states = 0;       ///< of the phrase
    int batches = 2500;   ///< steps of the training
    int batchSize = 24;   ///< crops in a step
    int slices = 2;       ///< of a batch, that can be computed at the same time; the result depends on it: each has its own means
    int cropFrames = 120; ///< that a crop's outputs speak of
    int outputStep = 3;   ///< frames between outputs; divides the dilations
    double peakRate = 4e-3; ///< of learning
    double labelSmoothing = 0.02;
    double dropout = 0.1;
    int leftOut = Folds::None; ///< half of the material that nothing is learned from
    uint64_t seed = 1;
    int threads = 1; ///< the result does not depend on it
};

/// Trains a time-delay network to tell the phrase's states and the background apart (hybrid of neural network and hidden Markov
/// model: Bourlard and Morgan, "Connectionist speech recognition: a hybrid approach", 1994). Half of the crops come from takes.
/// Each slice of a batch is normalised by itself (Hoffer, Hubara and Soudry, "Train longer, generalize better", 2017).
///
/// @return nothing when it was cancelled
/// @throws std::invalid_argument when there is nothing to draw from
std::optional<Network> TrainNetwork(const std::vector<TrainingSequence>& sequences, const NetworkTrainerOptions& options,
                                    const TrainingProgress& progress);

} // namespace velox::engine

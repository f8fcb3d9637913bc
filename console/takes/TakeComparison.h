#pragma once

#include "console/audio/AudioFile.h"
#include "console/takes/Remark.h"
#include "console/text/Progress.h"
#include "engine/models/AcousticModel.h"

#include <optional>
#include <span>
#include <vector>

namespace velox::console
{

/// What takes of one enrollment are compared by.
struct TakeFigures
{
    double level = 0.0;                    ///< of the speech, in dB
    double seconds = 0.0;                  ///< length of the phrase
    double score = 0.0;                    ///< with everybody's model
    std::optional<double> likeTheOthers{}; ///< score with a user's model that the other takes made
};

/// How a take differs from the others; the remark of each take that does, nothing for the rest. Two takes that differ are both
/// named, since none is in the majority; one take differs from nothing.
std::vector<std::optional<TakeRemark>> FindOutliers(std::span<const TakeFigures> takes, std::optional<double> userThreshold);

/// Trains a user's model from all takes but one, for each of them in turn, and scores the one left out with it. Nothing for a
/// take that the engine cannot compare.
/// @throws CommandFailure Interrupted
std::vector<std::optional<double>> ScoreAgainstOthers(std::span<const Audio* const> takes, const engine::AcousticModel& acoustic,
                                                      const engine::Population& population, Progress* progress);

/// The score that a model gives a take, 0 when it does not find the phrase.
double ScoreWith(const engine::PhraseModel& model, std::span<const float> take);

} // namespace velox::console

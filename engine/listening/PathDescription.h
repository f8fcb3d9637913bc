#pragma once

#include "engine/listening/Decoder.h"
#include "engine/models/PhraseModel.h"

namespace velox::engine
{

/// Nine numbers of a path that do not depend on where in the phrase a damage is, nor on durations: people pause, and draw out one
/// word.
using PathDescription = Eigen::Matrix<float, PhraseModel::PathFeatures, 1>;

/// Of the states' fits: means of the lowest one, two and four; their median; the lowest mean of three adjacent ones, and that
/// less the median; means of the first and of the last three; the search's score. Allocates nothing.
PathDescription DescribePath(const PhrasePath& path);

/// The judge's word on a path, in factors e of the false-alarm rate below half an alarm per hour. Allocates nothing.
float JudgePath(const PhraseModel& model, const PhrasePath& path);

} // namespace velox::engine

#pragma once

#include "engine/listening/Decoder.h"
#include "engine/models/PhraseModel.h"

namespace velox::engine
{

/// Twelve numbers of a path that do not depend on where in the phrase a damage is.
using PathDescription = Eigen::Matrix<float, PhraseModel::PathFeatures, 1>;

/// Means of the 1, 2 and 4 lowest state means; their median; the lowest mean of three adjacent states, and that less the median;
/// the mean of the two lowest frames; largest and mean squared logarithmic error of the durations, beside the tempo of the whole;
/// means of the first and of the last three states; the search's score. Allocates nothing.
PathDescription DescribePath(const PhrasePath& path, const StateModel& states);

/// The judge's word on a path, in factors e of the false-alarm rate below half an alarm per hour. Allocates nothing.
float JudgePath(const PhraseModel& model, const PhrasePath& path);

} // namespace velox::engine

#pragma once

#include "engine/listening/Decoder.h"
#include "engine/models/NearPhraseCheck.h"

namespace velox::engine
{

/// Twelve numbers of a path that do not depend on where in the phrase a damage is.
using PathDescription = Eigen::Matrix<float, NearPhraseCheck::Features, 1>;

/// Means of the 1, 2 and 4 lowest state means; their median; the lowest mean of three adjacent states, and that less the median;
/// the mean of the two lowest frames; largest and mean squared logarithmic error of the durations; means of the first and of the
/// last three states; the score. Allocates nothing.
PathDescription DescribePath(const PhrasePath& path, const StateModel& states);

/// How far a path lies above the check's cut; negative for a near phrase. Allocates nothing.
float NearPhraseMargin(const NearPhraseCheck& check, const PhrasePath& path, const StateModel& states);

} // namespace velox::engine

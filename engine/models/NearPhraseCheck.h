#pragma once

#include "engine/models/Decoder.h"
#include "engine/models/LogisticRegression.h"

namespace velox::engine
{

/// Tells the phrase from near phrases, in which a part is missing or replaced, by twelve numbers of the best path that do not
/// depend on where in the phrase the damage is. It runs only on a peak of the score (two stages: Gruenstein, Alvarez, Thornton
/// and Ghodrat, "A cascade architecture for keyword spotting on mobile devices", 2017).
struct NearPhraseCheck
{
    static constexpr Eigen::Index Features = 12;
    using Description = Eigen::Matrix<float, Features, 1>;

    LogisticRegression classifier;
    float cut = 0.0F; ///< least log odds of the phrase

    /// How far a path lies above the cut; negative for a near phrase.
    float Margin(const PhrasePath& path, const StateModel& states) const
    {
        return classifier.LogOdds(Describe(path, states)) - cut;
    }

    /// Means of the 1, 2 and 4 lowest state means; their median; the lowest mean of three adjacent states, and that less the
    /// median; the mean of the two lowest frames; largest and mean squared logarithmic error of the durations; means of the first
    /// and of the last three states; the score. Allocates nothing.
    static Description Describe(const PhrasePath& path, const StateModel& states);
};

} // namespace velox::engine

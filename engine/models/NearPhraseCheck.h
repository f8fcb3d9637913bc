#pragma once

#include "engine/models/LogisticRegression.h"

namespace velox::engine
{

/// Tells the phrase from near phrases, in which a part is missing or replaced, by a description of the best path. It runs only on
/// a peak of the score (two stages: Gruenstein, Alvarez, Thornton and Ghodrat, "A cascade architecture for keyword spotting on
/// mobile devices", 2017).
struct NearPhraseCheck
{
    /// Numbers of a description.
    static constexpr Eigen::Index Features = 12;

    LogisticRegression classifier;
    float cut = 0.0F; ///< least log odds of the phrase
};

} // namespace velox::engine

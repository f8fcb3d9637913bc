#pragma once

#include "engine/training/TakePreparation.h"

#include <vector>

namespace velox::engine
{

/// The halves into which the material falls: a network that learned from one is tried on the other (cross-fitting: Chernozhukov
/// et al., "Double/debiased machine learning", 2018).
struct Folds
{
    static constexpr int Count = 2;
    static constexpr int None = -1;

    std::vector<int> takes;      ///< of each take; those of one voice are in one half, unless there are fewer than four voices
    std::vector<int> background; ///< of each recording; neighbours, who are often of one speaker, mostly in one half

    static Folds Of(const std::vector<PreparedTake>& takes, const std::vector<std::vector<float>>& background);
};

} // namespace velox::engine

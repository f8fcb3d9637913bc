#pragma once

#include "engine/enrollment/Augmentation.h"

namespace velox::engine
{

/// A noisy copy and how it was made.
struct NoisyCopy
{
    std::vector<float> samples;
    AugmentationPlan plan;
};

} // namespace velox::engine

#pragma once

#include <functional>

namespace velox::engine
{

/// Told after each step how much of a training is done, 0 to 1; false cancels it.
using TrainingProgress = std::function<bool(double share)>;

} // namespace velox::engine

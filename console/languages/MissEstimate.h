#pragma once

#include "console/report/Report.h"

#include <span>

namespace velox::console
{

/// Adds how many takes are missed, as far as can be told of voices that a network has not heard, and their chart over the false
/// alarms per hour. With fewer than six voices it adds that nothing can be told.
/// @param scores  of the takes, as the training gives them
/// @param voices  that say the takes
void AddMisses(std::span<const float> scores, std::size_t voices, double alarmsPerHour, Report* report);

} // namespace velox::console

#pragma once

#include "evaluation/Report.h"

#include <string>
#include <vector>

namespace velox::evaluation
{

/// Figures of the quick evaluation that are worse than an engine in order gives, margin included: a line each. A figure that is
/// not there is broken, too.
std::vector<std::string> BrokenFloors(const Report& report);

} // namespace velox::evaluation

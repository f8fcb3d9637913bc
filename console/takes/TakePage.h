#pragma once

#include "console/pages/Report.h"
#include "console/takes/TakeReport.h"
#include "console/text/Outcome.h"

#include <span>
#include <string>

namespace velox::console
{

/// Takes as a page shows them, each with its pictures.
/// @param language  as texts show it
Report TakePage(const std::string& command, const std::string& language, std::span<const TakeReport> takes,
                const Outcome& outcome);

} // namespace velox::console

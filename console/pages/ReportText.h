#pragma once

#include "console/report/Report.h"
#include "console/text/Style.h"

namespace velox::console
{

/// A report for people: results, facts and remarks; lines, each with its end. Error and verdict are left to main.
/// @param everything  entries that are a detail, too
std::string ReportText(const Report& report, const Style& style, bool everything);

} // namespace velox::console

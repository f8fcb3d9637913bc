#pragma once

#include "console/report/Report.h"

namespace velox::console
{

/// A report for people: results, facts and remarks; lines, each with its end. Error and verdict are left to main.
/// @param coloured    for a terminal that knows escape sequences
/// @param everything  entries that are a detail, too
std::string ReportText(const Report& report, bool coloured, bool everything);

/// Text in the colour of a tone, for a terminal that knows escape sequences. @param coloured  false: as it is
std::string Coloured(Tone tone, const std::string& text, bool coloured);

} // namespace velox::console

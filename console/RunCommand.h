#pragma once

#include "console/report/Command.h"

#include <iosfwd>
#include <string_view>

namespace velox::console
{

/// Runs a command; whatever it throws becomes a report with an error. Then writes the page that was asked for. When that fails,
/// what the command did stands, and the report says both.
/// @param name  of the command
Report RunCommand(std::string_view name, const Command& command, Context& context);

/// What a failure is for people and machines.
Report ReportOf(const CommandFailure& failure);

/// Whether to colour: not when the environment variable NO_COLOR is set and not empty.
/// @param noColour  its value; null when it is not set
bool WantsColour(bool terminalTakesIt, const char* noColour);

/// Prints a report for people: text and verdict on `output`, the verdict last, an error on `errors`.
/// @param everything  details, too
void PrintReport(const Report& report, bool coloured, bool everything, std::ostream& output, std::ostream& errors);

} // namespace velox::console

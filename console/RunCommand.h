#pragma once

#include "console/text/Command.h"

#include <iosfwd>

namespace velox::console
{

/// Runs a command; whatever it throws becomes an outcome with an error.
Outcome RunCommand(const Command& command, Context& context);

/// What a failure is for people and machines.
Outcome OutcomeOf(const CommandFailure& failure);

/// Prints an outcome for people: text and verdict on `output`, the verdict last, an error on `errors`.
void PrintOutcome(const Outcome& outcome, const Style& style, std::ostream& output, std::ostream& errors);

} // namespace velox::console

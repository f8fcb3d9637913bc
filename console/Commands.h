#pragma once

#include "console/report/Command.h"

namespace velox::console
{

/// Declares every command and its options, in the order in which --help lists them.
void AddCommands(CLI::App& app, Commands& commands);

} // namespace velox::console

#pragma once

#include "console/report/Command.h"

namespace velox::console
{

/// velox-kws capabilities: what the detector announces to Windows.
void AddCapabilitiesCommand(CLI::App& app, Commands& commands);

} // namespace velox::console

#pragma once

#include "console/report/Command.h"

namespace velox::console
{

/// velox-kws arm: writes the block that arms the firmware.
void AddArmCommand(CLI::App& app, Commands& commands);

} // namespace velox::console

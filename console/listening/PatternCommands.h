#pragma once

#include "console/report/Command.h"

namespace velox::console
{

/// velox-kws arm: writes the block that arms the firmware.
void AddArmCommand(CLI::App& app, Commands& commands);

/// listen --pattern FILE WAV...: arms the DSP simulator, lets it hear recordings, and has the library parse what it reports.
void AddListenCommand(CLI::App& app, Commands& commands);

} // namespace velox::console

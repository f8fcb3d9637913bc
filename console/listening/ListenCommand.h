#pragma once

#include "console/report/Command.h"

namespace velox::console
{

/// listen --pattern FILE WAV...: arms the DSP simulator, lets it hear recordings, and has the library parse what it reports.
void AddListenCommand(CLI::App& app, Commands& commands);

} // namespace velox::console

#pragma once

#include "console/report/Command.h"

namespace velox::console
{

void AddMakeLanguageCommand(CLI::App& app, Commands& commands);

} // namespace velox::console

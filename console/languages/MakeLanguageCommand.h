#pragma once

#include "console/text/Command.h"

namespace velox::console
{

void AddMakeLanguageCommand(CLI::App& app, Commands& commands);

} // namespace velox::console

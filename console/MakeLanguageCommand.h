#pragma once

#include "Command.h"

namespace velox::console
{

void AddMakeLanguageCommand(CLI::App& app, Commands& commands);

} // namespace velox::console

#pragma once

#include "console/report/Command.h"

namespace velox::console
{

/// velox-kws verify: tells of recordings whether they could enroll a user, and why not.
void AddVerifyCommand(CLI::App& app, Commands& commands);

} // namespace velox::console

#pragma once

#include "console/report/Command.h"

namespace velox::console
{

/// velox-kws enroll: verifies takes, compares them with each other, trains a user's model and stores it.
void AddEnrollCommand(CLI::App& app, Commands& commands);

} // namespace velox::console

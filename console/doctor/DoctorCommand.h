#pragma once

#include "console/report/Command.h"

#include <filesystem>

namespace velox::console
{

/// doctor CONFIG [--bundle FILE]: everything that can be wrong before the first call.
void AddDoctorCommand(CLI::App& app, Commands& commands);

/// @param bundle  where a support bundle is written; empty for none
/// @param log     a log file besides the one in the folder for temporary files; may be empty
Report Examine(const std::filesystem::path& configuration, const std::filesystem::path& bundle = {},
               const std::filesystem::path& log = {});

} // namespace velox::console

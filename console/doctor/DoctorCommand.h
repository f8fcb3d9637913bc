#pragma once

#include "console/report/Command.h"

#include <filesystem>

namespace velox::console
{

/// doctor CONFIG: everything that can be wrong before the first call.
void AddDoctorCommand(CLI::App& app, Commands& commands);

/// @param everything  the text shows checks that found nothing wrong, too
Outcome Examine(const std::filesystem::path& configuration, bool everything, const Style& style);

} // namespace velox::console

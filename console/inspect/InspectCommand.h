#pragma once

#include "console/report/Command.h"

#include <filesystem>
#include <vector>

namespace velox::console
{

/// inspect FILE [FILE2]: shows what stands in firmware blocks, models and threshold files, and how two of them differ.
void AddInspectCommand(CLI::App& app, Commands& commands);

/// @param files  one or two
/// @throws CommandFailure BadInput for a file that cannot be read
Report InspectFiles(const std::vector<std::filesystem::path>& files);

} // namespace velox::console

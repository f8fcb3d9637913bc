#pragma once

#include "console/report/Report.h"

#include <string>
#include <string_view>

namespace velox::console
{

/// The document of --json, the same shape for every command (docs/console-json.schema.json), with a line end.
/// @param command  its name, empty when the command line named none
std::string ReportDocument(std::string_view command, const Report& report);

} // namespace velox::console

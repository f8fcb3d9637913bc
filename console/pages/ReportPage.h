#pragma once

#include "console/report/Report.h"

#include <string>
#include <string_view>

namespace velox::console
{

/// One page that needs nothing else: well-formed as XML, no script, pictures inline. The same report gives the same bytes.
/// @param command  that made the report
std::string ReportPage(std::string_view command, const Report& report);

} // namespace velox::console

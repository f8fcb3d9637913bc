#pragma once

#include "console/pages/Report.h"

namespace velox::console
{

/// One page that needs nothing else: well-formed as XML, no script, pictures inline. The same report gives the same bytes.
std::string RenderReport(const Report& report);

} // namespace velox::console

#pragma once

#include "console/doctor/Finding.h"
#include "console/text/Style.h"

#include <nlohmann/json_fwd.hpp>

namespace velox::console
{

std::size_t CountOf(const Findings& findings, Severity severity);

/// The findings, the worst first; lines, each with its end. @param everything  checks that found nothing wrong, too
std::string FindingsText(const Findings& findings, bool everything, const Style& style);

/// The same as elements of the --json document; with all checks, whatever the text shows.
nlohmann::ordered_json FindingsJson(const Findings& findings);

/// "2 errors and 1 warning."; then what fails for which of the languages.
std::string FindingsVerdict(const Findings& findings, const std::vector<uint16_t>& languages);

} // namespace velox::console

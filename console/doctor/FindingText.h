#pragma once

#include "console/doctor/Finding.h"
#include "console/report/Results.h"
#include "console/text/Style.h"

namespace velox::console
{

std::size_t CountOf(const Findings& findings, Severity severity);

/// The findings, the worst first; lines, each with its end. @param everything  checks that found nothing wrong, too
std::string FindingsText(const Findings& findings, bool everything, const Style& style);

/// The same for machines; with all checks, whatever the text shows.
Results FindingsJson(const Findings& findings);

/// "2 errors and 1 warning."; then what fails for which of the languages.
std::string FindingsVerdict(const Findings& findings, const std::vector<uint16_t>& languages);

} // namespace velox::console

#pragma once

#include "console/doctor/Finding.h"
#include "console/doctor/NamedFile.h"

namespace velox::console
{

/// Checks the text of a threshold file that can be read.
/// @param what  the threshold, at the beginning of a sentence
void CheckThreshold(const NamedFile& file, std::string_view what, Findings* findings);

} // namespace velox::console

#pragma once

#include "console/inspect/InspectionRecord.h"

namespace velox::console
{

/// Looks at what a file begins with; damage to one field does not make a block another one.
FileKind RecogniseFile(std::span<const uint8_t> bytes);

/// Reads a file field by field, as what it is recognised as.
Inspection Inspect(std::span<const uint8_t> bytes);

} // namespace velox::console

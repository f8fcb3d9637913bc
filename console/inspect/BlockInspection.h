#pragma once

#include "console/inspect/FieldReader.h"

namespace velox::console
{

/// Which of the firmware blocks of docs/firmware-blocks.md the bytes are; one that is damaged in one place is recognised all the
/// same.
FileKind RecogniseBlock(std::span<const uint8_t> bytes);

/// Reads a block that takes up all that is left.
void InspectArmingPattern(FieldReader* reader);
void InspectDetectionResult(FieldReader* reader);

/// Reads what both blocks begin with.
void InspectBlockHead(FieldReader* reader);

} // namespace velox::console

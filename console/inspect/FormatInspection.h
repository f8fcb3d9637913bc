#pragma once

#include "console/inspect/Inspection.h"

namespace velox::console
{

/// Which of the firmware blocks of docs/firmware-blocks.md the bytes are; one that is damaged in one place is recognised all the
/// same.
FileKind RecogniseBlock(std::span<const uint8_t> bytes);
void InspectBlock(std::span<const uint8_t> bytes, Inspection* inspection);

/// Whether bytes begin as a model of the stand-in engine does, and as which (docs/engine-statuses.md). A closed engine's user
/// models begin with "VWOV", too.
FileKind RecogniseModel(std::span<const uint8_t> bytes);

/// Reads a model's header from an offset up to the end, and lets the engine's reader tell whether the rest is right.
void InspectModel(std::span<const uint8_t> bytes, Inspection* inspection, std::size_t offset = 0, std::string_view prefix = {});

} // namespace velox::console

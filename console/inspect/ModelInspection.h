#pragma once

#include "console/inspect/FieldReader.h"

namespace velox::console
{

/// Whether bytes begin as a model of the stand-in engine does, and as which. A closed engine's user models begin with "VWOV",
/// too.
FileKind RecogniseModel(std::span<const uint8_t> bytes);

/// Reads a model of the stand-in engine (docs/engine-statuses.md) that takes up all that is left.
/// @param kind  what the model must be
void InspectModel(FileKind kind, FieldReader* reader);

/// Reads what an arming pattern carries, or a user model stream holds: a firmware model of the stand-in, or bytes that only their
/// engine understands.
void InspectOpaqueModel(std::string_view name, FieldReader* reader);

} // namespace velox::console

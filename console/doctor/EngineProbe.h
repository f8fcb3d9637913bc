#pragma once

#include "console/doctor/EngineCheck.h"

namespace velox::console
{

/// Looks for the engine and the library as Windows does for this program, and asks the engine for its frame size in a session of
/// its own, as the library does.
EngineFacts ProbeEngine();

} // namespace velox::console

#pragma once

#include "LogLine.h"
#include "Outcome.h"

#include <span>

namespace velox::console
{

/// What the library's lines say about a failed operation, in a person's words, as a failure with its class and its fix. The line
/// with the detail (level 2) counts before the operation's own (level 1).
/// @param operation  what was tried, "Arming language 1033"
/// @param result     its HRESULT
CommandFailure ExplainFailure(const std::string& operation, int32_t result, std::span<const LogLine> lines);

/// Whether the lines tell of a fault, and not only of an answer that is no. A missing SDKLoggerLevel is no fault.
bool TellOfAFault(std::span<const LogLine> lines);

} // namespace velox::console

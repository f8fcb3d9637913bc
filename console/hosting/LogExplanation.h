#pragma once

#include "console/hosting/LoggedLine.h"
#include "console/text/CommandFailure.h"

#include <span>
#include <vector>

namespace velox::console
{

/// What the library's lines say about a failed operation, in a person's words, as a failure with its class and its fix. The line
/// with the detail (level 2) counts before the operation's own (level 1).
/// @param operation  what was tried, "Arming language 1033"
/// @param result     its HRESULT
CommandFailure ExplainFailure(const std::string& operation, int32_t result, std::span<const LoggedLine> lines);

/// A take that the engine left out of a training: the library goes on without it and fails only for the last one.
struct LeftOutTake
{
    std::size_t index = 0; ///< among those handed to the training
    uint32_t engineStatus = 0;
};
std::vector<LeftOutTake> FindLeftOutTakes(std::span<const LoggedLine> lines);

} // namespace velox::console

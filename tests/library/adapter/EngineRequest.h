#pragma once

#include "library/adapter/EngineRequest.h"

#include "tests/library/adapter/Lines.h"

/// The lines of an operation named Operation.
namespace Requesting
{

constexpr EngineRequestLines Texts{
    .parametersNotCreated = "[Operation] Failed to create enrollment parameters.",
    .enrollmentParametersFailed = "[Operation] Failed to get enrollment parameters.",
    .detectionParametersFailed = "[Operation] Failed to get detection parameters.",
    .constraintsFailed = "[Operation] Failed to get platform constraints.",
    .logLevelFallbackFormat = "[Operation] Failed to get SDK logger severity level. Continuing with log level: %d",
    .wrapperNotCreated = "[Operation] Failed to create key-phrase recognition instance.",
};

inline const std::string Operation = "[Operation] ";
inline const LogLine Fallback = RequestLines::LevelFallback(Operation);
inline const LogLine WrapperNotCreated = RequestLines::WrapperNotCreated(Operation);

} // namespace Requesting

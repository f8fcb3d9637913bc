#pragma once

#include "IVeloxWovWrapper.h"
#include "library/configuration/ConfigurationReader.h"

#include <memory>

/// The lines of an operation that needs the engine; each begins with the operation's name.
struct EngineRequestLines
{
    const char* parametersNotCreated;
    const char* enrollmentParametersFailed;
    const char* detectionParametersFailed;
    const char* constraintsFailed;
    const char* logLevelFallbackFormat; ///< "%d" for the level that is used
    const char* wrapperNotCreated;
};

/// A wrapper and the model files that it borrows, for the span of one operation.
struct EngineRequest
{
    std::unique_ptr<EnrollmentParameters> parameters;

    /// Released before the parameters. Kept: its deleter frees the storage and runs no destructor.
    std::unique_ptr<KeywordDetectorAdapterImplementation::IVeloxWovWrapper,
                    KeywordDetectorAdapterImplementation::AdapterCustomDeleter>
        wrapper;
};

/// Gathers a language's models, thresholds and constraints and the engine's log level afresh, and creates a wrapper from them.
/// @param languageId  a supported language
/// @return S_OK, or E_FAIL, logged with the operation's line and the failing call's own status
HRESULT OpenEngineRequest(ConfigurationReader* reader, IVeloxKeywordDetectorLogger* logger, uint16_t languageId,
                          const EngineRequestLines& lines, EngineRequest* request);

#pragma once

#include "VeloxWovDetectionParameters.h"
#include "tests/scripted-engine/ScriptedEngine.h"
#include "tests/support/LogLine.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

/// A verification's input, and what the engine is told to answer.
struct VerificationScript
{
    int32_t frameSize = 150;
    uint32_t samples = 0;
    int32_t keywordEndBytePos = 0;
    VELOX_WOV_DETECTION_PARAMETERS detection{};
    bool detectedBefore = false;

    uint32_t scoreCount = 1;
    std::vector<EngineStep> steps;
    EngineStep laterStep;
    uint32_t flushSteps = 0;
    /// Statuses of the n-th calls of functions, counted from 1 in the session.
    std::map<std::pair<std::string, uint64_t>, uint32_t> answers;
};

/// What a verification does from the setting of the model on.
struct VerificationOutcome
{
    bool succeeded = false; ///< S_OK, else E_FAIL
    bool detected = false;
    Lines events; ///< lines and engine calls in one order; those of the buffer are "Lock" and "Unlock"
};

/// The whole operation written straight down, against the script; it shares nothing with the product or the scripted engine.
VerificationOutcome PredictVerification(const VerificationScript& script);

#pragma once

#include "console/doctor/Finding.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velox::console
{

/// The functions that the library imports from the engine.
inline constexpr std::array<std::string_view, 15> EngineFunctions{"VWoVDestroySession",
                                                                  "VWoVFeedAudioFrame",
                                                                  "VWoVFinalizeEnrollment",
                                                                  "VWoVFinalizeEnrollmentUtterance",
                                                                  "VWoVFlush",
                                                                  "VWoVGetIntOutput",
                                                                  "VWoVGetScores",
                                                                  "VWoVInit",
                                                                  "VWoVInitSession",
                                                                  "VWoVPrepareLpeData",
                                                                  "VWoVSetAttribute",
                                                                  "VWoVSetBinAttribute",
                                                                  "VWoVSetModel",
                                                                  "VWoVStartEnrollment",
                                                                  "VWoVStartEnrollmentUtterance"};

/// What was found out about a DLL.
struct DllFacts
{
    std::string name;    ///< "VeloxWovSDK.dll"
    std::string path;    ///< where Windows found it; empty when nowhere
    std::string version; ///< of its version resource; empty without one
    bool loaded = false;
    std::string loadError; ///< Windows' words; empty when it was loaded
};

/// What the session told that is opened for the frame size only, as the library does.
struct FrameSizeFacts
{
    uint32_t status = 0; ///< of the first call that failed
    uint32_t count = 0;
    int32_t samples = 0;
};

struct EngineFacts
{
    DllFacts library;
    DllFacts engine;
    std::vector<std::string> missingFunctions;
    FrameSizeFacts frameSize; ///< meaningful when the engine is loaded and no function is missing
};

Findings CheckEngine(const EngineFacts& facts);

} // namespace velox::console

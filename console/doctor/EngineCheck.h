#pragma once

#include "console/doctor/Finding.h"

namespace velox::console
{

/// The functions that the library imports from the engine.
inline constexpr std::string_view EngineFunctions[]{"VWoVDestroySession",
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
    std::string name{};    ///< "VeloxWovSDK.dll"
    std::string path{};    ///< where Windows found it; empty when nowhere
    std::string version{}; ///< of its version resource; empty without one
    bool loaded = false;
    std::string loadError{}; ///< Windows' words; empty when it was loaded
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
    DllFacts library{};
    DllFacts engine{};
    std::vector<std::string> missingFunctions{};
    FrameSizeFacts frameSize{}; ///< meaningful when the engine is loaded and no function is missing
};

/// Looks for the engine and the library as Windows does for this program, and asks the engine for its frame size in a session of
/// its own, as the library does.
EngineFacts ProbeEngine();

/// "1.0.0.0" of a program's version resource; empty without one.
std::string FileVersionOf(const std::wstring& path);

Findings CheckEngine(const EngineFacts& facts);

} // namespace velox::console

#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

/// How the library's GetCapabilities ends, and what it then leaves with its caller.
enum class CapabilitiesEnd
{
    Success,
    NoKeywords,      ///< E_OUTOFMEMORY: nothing
    NoConfiguration, ///< E_FAIL: the keywords
    NoLanguages,     ///< E_OUTOFMEMORY: the address of the keywords, which were freed
    BadLanguage,     ///< E_FAIL: keywords and languages
    NoFormat,        ///< E_OUTOFMEMORY: keywords and languages
    Exception,       ///< std::runtime_error: keywords and languages
};

/// What the library's double is to answer, and what was asked of it. Its objects remember an arming as the library's do; they
/// fail no call of theirs by a FaultPlan.
class ScriptedLibrary
{
public:
    /// Answers as at first, and forgets what was asked.
    void Reset();

    /// Operations: "GetCapabilities", "VerifyUserKeyword", "ComputeAndAddUserModelData", "BuildArmingPatternData",
    /// "ParseDetectionResultData".
    std::map<std::string, HRESULT> results;             ///< instead of what comes of the arguments
    std::map<std::string, std::vector<uint32_t>> lines; ///< levels of the lines that an operation writes
    std::string lineOfLevel2 = "[WriteModelToIStream] Failed to commit data to stream.";
    std::function<void(const std::string& operation)> onCall; ///< may throw
    CapabilitiesEnd capabilitiesEnd = CapabilitiesEnd::Success;
    int32_t supportsUserModels = 1;
    std::vector<uint16_t> languages{1033, 1040};
    uint32_t level = 5; ///< what an object tells the logger
    bool logToFile = true;

    /// What was called, for example "Create(C:\Velox\configuration.xml)", "VerifyUserKeyword(1, 1033, -1)", "~".
    std::vector<std::string> calls;
    std::vector<std::vector<float>> recordings; ///< that were verified or computed
    std::string stream;                         ///< what the operation's stream held; "null" for none
    GUID detectorId{};
    int objects = 0;     ///< that live
    int mostObjects = 0; ///< that lived at once
};

ScriptedLibrary& GetScriptedLibrary();

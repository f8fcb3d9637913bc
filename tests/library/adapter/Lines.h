#pragma once

#include "tests/library/configuration/Lines.h"
#include "tests/library/modelstream/Lines.h"
#include "tests/library/wovwrapper/Lines.h"

#include <windows.h>

#include <string>

// What the adapter's operations log.

namespace ArmingLines
{

inline const LogLine Entry = Log(4, 0, "[BuildArmingPatternData] Entry.");
inline const LogLine LanguageNotChecked = Log(1, 0, "[BuildArmingPatternData] Failed to check if language is supported.");
inline const LogLine UsingPredefined = Log(4, 0, "[BuildArmingPatternData] Using predefined model.");
inline const LogLine UsingUser = Log(4, 0, "[BuildArmingPatternData] Using user model.");
inline const LogLine UserModelFailed = Log(1, 0, "[BuildArmingPatternData] Failed to get user model.");
inline const LogLine PredefinedModelFailed = Log(1, 0, "[BuildArmingPatternData] Failed to get predefined model.");
inline const LogLine ParametersFailed =
    LogWithStatus(1, 0, "[BuildArmingPatternData] Failed to load configuration parameters.", E_FAIL);
inline const LogLine WithoutMemory = Log(1, 0, "[BuildArmingPatternData] Failed to allocate memory for pattern data.");
inline const LogLine Success = Log(4, 0, "[BuildArmingPatternData] Exit, success.");

/// Entry and the line about the language.
inline Lines Begun(int languageId)
{
    return Entry + LogFormat(4, 0, "[BuildArmingPatternData] Building package for language: " + std::to_string(languageId) + ".");
}

inline LogLine InvalidKeyword(int keywordId, int languageId)
{
    return LogFormat(1, 0,
                     "[BuildArmingPatternData] Validation error, expected keyword ID: 1, actual keyword ID: " +
                         std::to_string(keywordId) + ". Language ID: " + std::to_string(languageId) + ".");
}

inline LogLine DynamicSize(uint32_t size)
{
    return LogFormat(5, 0, "[BuildArmingPatternData] Dynamic model data size: " + std::to_string(size) + ".");
}

inline LogLine Parameters(uint32_t quality, uint32_t threshold, uint32_t modelSize)
{
    return LogFormat(5, 0,
                     "[BuildArmingPatternData] Detection parameters: Quality threshold(" + std::to_string(quality) + "), KPD(" +
                         std::to_string(threshold) + "), model_size(" + std::to_string(modelSize) + ").");
}

/// From the entry to the choice of the model.
inline Lines Choosing(int languageId, bool userModel)
{
    return Begun(languageId) + (userModel ? StreamLines::ModelFound + UsingUser : StreamLines::NoModelFound + UsingPredefined);
}

/// A whole arming of the predefined model.
inline Lines PredefinedArmed(int languageId, uint32_t quality, uint32_t threshold, uint32_t modelSize)
{
    return Choosing(languageId, false) + Parameters(quality, threshold, modelSize) + Success;
}

/// A whole arming of the stream's model.
inline Lines UserArmed(int languageId, const Lines& reading, uint32_t quality, uint32_t threshold, uint32_t modelSize)
{
    return Choosing(languageId, true) + reading + DynamicSize(modelSize) + Parameters(quality, threshold, modelSize) + Success;
}

} // namespace ArmingLines

namespace ParsingLines
{

inline const LogLine Entry = Log(4, 0, "[ParseDetectionResultData] Entry.");
inline const LogLine OutputMissing =
    Log(1, 0, "[ParseDetectionResultData] Validation error, one or more of the output parameters is null.");
inline const LogLine InputMissing =
    Log(1, 0, "[ParseDetectionResultData] Validation error, one or more of the input parameters is null.");
inline const LogLine ParametersFailed =
    LogWithStatus(1, 0, "[ParseDetectionResultData] Failed to get detection parameters.", E_FAIL);
inline const LogLine UserMatched = Log(4, 0, "[ParseDetectionResultData] User matched for the user model.");
inline const LogLine IndependentMatched = Log(4, 0, "[ParseDetectionResultData] User matched for the user independent model.");
inline const LogLine Success = Log(4, 0, "[ParseDetectionResultData] Exit, success.");

/// Entry and the line about the language.
inline Lines Begun(int languageId)
{
    return Entry + LogFormat(4, 0, "[ParseDetectionResultData] Language Id: " + std::to_string(languageId) + ".");
}

inline LogLine InvalidSize(uint32_t size)
{
    return LogFormat(1, 0,
                     "[ParseDetectionResultData] Validation error, expected result data size: 60, actual size : " +
                         std::to_string(size) + ".");
}

inline LogLine Scores(unsigned int keywordId, unsigned int score, unsigned int threshold)
{
    return LogFormat(5, 0,
                     "[ParseDetectionResultData] KeywordIdFw (" + std::to_string(keywordId) + "), KPD score (" +
                         std::to_string(score) + "), KPD threshold (" + std::to_string(threshold) + ").");
}

inline LogLine InvalidKeyword(unsigned int keywordId)
{
    return LogFormat(3, 0, "[ParseDetectionResultData] Invalid KeywordId: " + std::to_string(keywordId) + ".");
}

/// The lines that follow the keyword's.
inline Lines Matched(bool user, uint64_t start, uint64_t end)
{
    return (user ? UserMatched : IndependentMatched) +
           LogFormat(5, 0,
                     "[ParseDetectionResultData] Keyword start (" + std::to_string(start) + "), keyword end (" +
                         std::to_string(end) + ").") +
           Success;
}

} // namespace ParsingLines

namespace CapabilityLines
{

inline const LogLine Entry = Log(4, 0, "[GetCapabilities] Entry.");
inline const LogLine OutputMissing =
    Log(1, 0, "[GetCapabilities] Validation error, one or more of the output parameters is null.");
inline const LogLine NoKeywordBuffer = Log(1, 0, "[GetCapabilities] Failed to allocate buffer for keyword IDs.");
inline const LogLine NoLanguageBuffer = Log(1, 0, "[GetCapabilities] Failed to allocate buffer for language IDs.");
inline const LogLine NoCount = Log(1, 0, "[GetCapabilities] Failed to get languages count from configuration file.");
inline const LogLine NoIds = Log(1, 0, "[GetCapabilities] Failed to get languages IDs from configuration file.");
inline const LogLine Success = Log(4, 0, "[GetCapabilities] Exit, success.");

inline LogLine Supported(std::size_t languages)
{
    return LogFormat(4, 0, "[GetCapabilities] Languages supported: " + std::to_string(languages) + ".");
}

} // namespace CapabilityLines

/// What the operations log that need the engine, each with its name: "[VerifyUserKeyword] " and so on.
namespace RequestLines
{

inline const std::string Verifying = "[VerifyUserKeyword] ";
inline const std::string Computing = "[ComputeAndAddUserModelData] ";

inline LogLine LanguageNotChecked(const std::string& operation)
{
    return Log(1, 0, operation + "Failed to check if language is supported.");
}

inline LogLine ParametersNotCreated(const std::string& operation)
{
    return Log(1, 0,
               operation + (operation == Computing ? "Failed to create enrollment parameters instance."
                                                   : "Failed to create enrollment parameters."));
}

/// @param what "enrollment parameters", "detection parameters" or "platform constraints"
inline LogLine NotGathered(const std::string& operation, const std::string& what)
{
    return LogWithStatus(1, 0, operation + "Failed to get " + what + ".", E_FAIL);
}

inline LogLine WrapperNotCreated(const std::string& operation)
{
    return Log(1, 0, operation + "Failed to create key-phrase recognition instance.");
}

inline LogLine LevelFallback(const std::string& operation)
{
    return LogFormat(3, 0, operation + "Failed to get SDK logger severity level. Continuing with log level: 3");
}

/// What happens between the checks of an operation and the wrapper's own work: the engine's level is 2, the probe's session 1.
inline const Lines Gathered = ConfigurationLines::LevelTaken("S", 2) + WrapperLines::Probe(1);

/// What the engine is told for 1033.
inline const WrapperLines::Settings Settings{"2", "am_1033", "zn_1033", "kp_1033"};

// VerifyUserKeyword

inline const LogLine VerifyInvalid = Log(1, 0, Verifying + "Validation error, one or more of the input parameters is invalid.");
inline const LogLine NotVerified = LogWithStatus(1, 0, Verifying + "Failed to verify keyword.", E_FAIL);
inline const LogLine Detected = LogFormat(4, 0, Verifying + "Exit. Key-phrase detected: TRUE.");
inline const LogLine NotDetected = LogFormat(4, 0, Verifying + "Exit. Key-phrase detected: FALSE.");

/// Entry and the line about the arguments.
inline Lines VerifyBegun(const std::string& keywordId, int languageId, int32_t position)
{
    return Log(4, 0, Verifying + "Entry.") +
           LogFormat(5, 0,
                     Verifying + "KeywordId: " + keywordId + ", LangId: " + std::to_string(languageId) +
                         ", KeywordBytePos: " + std::to_string(position) + ".");
}

// ComputeAndAddUserModelData

inline const LogLine ComputeEntry = Log(4, 0, Computing + "Entry.");
inline const LogLine NoRecordings = Log(1, 0, Computing + "No recordings provided for model computation.");
inline const LogLine NoStream = Log(1, 0, Computing + "Pointer to ModelData is null.");
inline const LogLine NoPositions = Log(1, 0, Computing + "Pointer to keyword end positions is null.");
inline const LogLine ComputeExit = Log(4, 0, Computing + "Exit.");

inline LogLine InvalidKeyword(const std::string& keywordId, int languageId)
{
    return LogFormat(1, 0,
                     Computing + "Validation error, expected keyword ID: 1, actual keyword ID: " + keywordId +
                         ". Language ID: " + std::to_string(languageId) + ".");
}

/// Entry and the lines about the recordings.
inline Lines ComputeBegun(const std::vector<int32_t>& positions)
{
    Lines lines = ComputeEntry + Log(5, 0, Computing + "Recordings: " + std::to_string(positions.size()));
    for (std::size_t i = 0; i < positions.size(); ++i)
    {
        lines = lines + Log(5, 1, "[Recording " + std::to_string(i + 1) + "] KeywordBytePos: " + std::to_string(positions[i]));
    }
    return lines;
}

inline LogLine NotTrained(HRESULT status)
{
    return LogWithStatus(1, 0, Computing + "Failed to train model.", status);
}

inline LogLine NotWritten(HRESULT status)
{
    return LogWithStatus(1, 0, Computing + "Failed to write model to IStream.", status);
}

} // namespace RequestLines

#pragma once

#include "tests/support/LogLine.h"

#include <string>

/// What the room's operations log, apart from what only one test file looks at.
namespace ConfigurationLines
{

inline LogLine NotLoaded(const std::string& operation, const std::string& path, const std::string& status)
{
    return LogFormat(2, 1, "[" + operation + "] Failed to load configuration file: " + path + ". Status: " + status + ".");
}

inline LogLine NoRoot(const std::string& operation)
{
    return LogFormat(2, 1, "[" + operation + "] Failed to load root element of DOM.");
}

/// The lookup of a language, of an element of it, or of a root attribute: "directory attribute", "acoustic model XML element".
inline LogLine NotGot(const std::string& operation, const std::string& what)
{
    return Log(2, 1, "[" + operation + "] Failed to get " + what + ".");
}

/// An id or a quality threshold that is missing (status 1) or no number (status 2).
inline LogLine AttributeFailed(const std::string& operation, int status)
{
    const std::string what = operation == "GetDetectionParameters" ? "attribute" : "ID attribute";
    return LogFormat(2, 1,
                     "[" + operation + "] Failed to query " + what + ". XML parser status: " + std::to_string(status) + ".");
}

inline LogLine FileNotOpened(const std::string& fileName)
{
    return LogFormat(2, 1, "[LoadFile] Failed to load file: " + fileName + ".");
}

inline LogLine FileEmpty(const std::string& fileName)
{
    return LogFormat(2, 1, "[LoadFile] The file: " + fileName + "  is empty.");
}

inline LogLine FileWithoutMemory(const std::string& fileName)
{
    return LogFormat(2, 1, "[LoadFile] Failed to allocate memory for data from file: " + fileName + ".");
}

inline const LogLine ThresholdNotOpened = Log(2, 1, "[ReadThresholdFile] Failed to open threshold file.");
inline const LogLine ThresholdNotRead = Log(2, 1, "[GetDetectionParameters] Failed to read threshold file.");
inline const LogLine ConstraintsNotOpened = Log(2, 1, "[GetPlatformConstraints] Failed to open platform constraints file.");

// The registry. A level's name comes out as its first letter.

inline LogLine RegistryNotOpened(const std::string& operation, const std::string& status)
{
    return LogFormat(4, 1, "[" + operation + "] Failed to open registry. Status: 0x" + status);
}

inline LogLine RegistryNotClosed(const std::string& operation)
{
    return LogFormat(3, 1, "[" + operation + "] Failed to close registry key with status: 0x6.");
}

inline LogLine LevelTaken(const std::string& letter, uint32_t level)
{
    return LogFormat(4, 1,
                     "[GetLoggerSeverityLevelFromRegistry] Logger " + letter + " severity level: " + std::to_string(level) + ".");
}

inline LogLine LevelOutOfRange(const std::string& letter, int32_t maxLevel, uint32_t level)
{
    return LogFormat(3, 1,
                     "[GetLoggerSeverityLevelFromRegistry] Logger " + letter + " level for key out of range [0, " +
                         std::to_string(maxLevel) + "].Actual value: " + std::to_string(level) +
                         ". Using default level: NO_LOGS.");
}

inline LogLine LevelNotRead(const std::string& letter, const std::string& status, uint32_t level)
{
    return LogFormat(4, 1,
                     "[GetLoggerSeverityLevelFromRegistry] Failed to query registry key " + letter + " value with status: 0x" +
                         status + ".Setting logger level to: " + std::to_string(level));
}

inline LogLine LogToFileTaken(const std::string& value)
{
    return LogFormat(4, 1, "[GetLogToFileFromReg] Log to file value: " + value + ".");
}

inline LogLine LogToFileNotRead(const std::string& status)
{
    return LogFormat(4, 1, "[GetLogToFileFromReg] Failed to query registry key value with status: 0x" + status + ".");
}

} // namespace ConfigurationLines

#pragma once

#include "IVeloxKeywordDetectorLogger.h"
#include "VeloxWovDetectionParameters.h"
#include "library/configuration/EnrollmentParameters.h"

#include <windows.h>

#include <cstdint>
#include <string>

/// Reads the XML configuration file, the files that it names, and the registry settings.
///
/// Nothing is cached: every operation loads the file anew, so a change to it takes effect at the next call. Every failure is
/// logged where it is found, with source 1, and reported as E_FAIL: those of the files at level 2, those of the registry at level
/// 4 (key or value cannot be read) and 3 (value out of range, key that cannot be closed). An operation that fails part way leaves
/// what it already wrote.
class ConfigurationReader
{
public:
    /// @param configurationFilePath  copied; the file is not touched yet
    /// @param logger                 borrowed, must outlive the reader
    ConfigurationReader(const std::string& configurationFilePath, IVeloxKeywordDetectorLogger* logger);
    ConfigurationReader(const ConfigurationReader&) = delete;
    ConfigurationReader& operator=(const ConfigurationReader&) = delete;
    virtual ~ConfigurationReader() = default;

    /// Number of language elements, valid or not.
    HRESULT GetLanguagesCount(uint32_t* count);

    /// Low 16 bits of every language element's id, in the file's order.
    /// @param room  entries that the buffer has: no more are written, should the file have grown since they were counted
    HRESULT GetLanguagesIds(uint16_t** languageIds, uint32_t room = UINT32_MAX);

    /// Whether some language element has this id; elements without a valid id are passed over. S_OK once the file loaded.
    HRESULT IsLanguageSupported(uint16_t languageId, bool* supported);

    /// First line of the platform-constraints file, without its line end.
    HRESULT GetPlatformConstraints(std::string* constraints);

    // The three lookups below return S_OK and fill nothing when no language element carries the id: callers ask
    // IsLanguageSupported first. Unlike there, an element without a valid id ends the search with E_FAIL.

    /// Loads the language's three model files. Only the result of the last load counts: a key-phrase or acoustic model that
    /// cannot be read leaves its member null. Kept: deployments with partial model sets rely on it.
    HRESULT GetEnrollmentParameters(uint16_t languageId, EnrollmentParameters* parameters);

    /// Loads the language's firmware model into a new block, which the caller releases with delete[].
    HRESULT GetPredefinedModel(uint16_t languageId, uint8_t** data, uint32_t* size);

    /// Reads the language's quality threshold and its two threshold files.
    HRESULT GetDetectionParameters(uint16_t languageId, VELOX_WOV_DETECTION_PARAMETERS* parameters);

    /// @param level     holds the caller's default; receives the registry value when that lies between 0 and maxLevel
    /// @param valueName "LoggerLevel" or "SDKLoggerLevel"
    /// @return S_OK; E_FAIL when the value cannot be read or is out of range
    HRESULT GetLoggerSeverityLevelFromRegistry(uint32_t* level, const wchar_t* valueName, int32_t maxLevel);

    /// @param logToFile holds the caller's default; overwritten when "LogToFile" can be read
    void GetLogToFileFromReg(bool* logToFile);

private:
    HRESULT LoadFile(const std::string& directory, const std::string& fileName, uint8_t** data, uint32_t* size);
    HRESULT ReadThresholdFile(const std::string& directory, const std::string& fileName, int32_t* value);

    std::string configurationFilePath;
    IVeloxKeywordDetectorLogger* logger;
};

#include "library/configuration/ConfigurationReader.h"
#include "library/configuration/RegistryKey.h"

using namespace VeloxLogLevel;
using namespace VeloxLogSource;

HRESULT ConfigurationReader::GetLoggerSeverityLevelFromRegistry(uint32_t* level, const wchar_t* valueName, int32_t maxLevel)
{
    RegistryKey key;
    if (const LSTATUS status = key.Open(); status != ERROR_SUCCESS)
    {
        logger->LogFormat(Information, Internals, "[GetLoggerSeverityLevelFromRegistry] Failed to open registry. Status: 0x%x",
                          static_cast<unsigned int>(status));
        return E_FAIL;
    }

    HRESULT result = E_FAIL;
    int32_t value = 0;
    if (const LSTATUS status = key.Query(valueName, &value); status != ERROR_SUCCESS)
    {
        // Here and below the wide name goes to a "%s" as it stands. Kept: field logs rely on the lines as they come out.
        logger->LogFormat(Information, Internals,
                          "[GetLoggerSeverityLevelFromRegistry] Failed to query registry key %s value with status: "
                          "0x%x.Setting logger level to: %d",
                          valueName, static_cast<unsigned int>(status), static_cast<int>(*level));
    }
    else if (0 <= value && value <= maxLevel)
    {
        *level = static_cast<uint32_t>(value);
        logger->LogFormat(Information, Internals, "[GetLoggerSeverityLevelFromRegistry] Logger %s severity level: %d.", valueName,
                          static_cast<int>(value));
        result = S_OK;
    }
    else
    {
        // Kept: "Actual value" is the caller's default, and NO_LOGS is named whatever that default is.
        logger->LogFormat(Warning, Internals,
                          "[GetLoggerSeverityLevelFromRegistry] Logger %s level for key out of range [%d, %d].Actual value: "
                          "%d. Using default level: NO_LOGS.",
                          valueName, 0, static_cast<int>(maxLevel), static_cast<int>(*level));
    }

    if (const LSTATUS status = key.Close(); status != ERROR_SUCCESS)
    {
        logger->LogFormat(Warning, Internals,
                          "[GetLoggerSeverityLevelFromRegistry] Failed to close registry key with status: 0x%x.",
                          static_cast<unsigned int>(status));
    }
    return result;
}

void ConfigurationReader::GetLogToFileFromReg(bool* logToFile)
{
    RegistryKey key;
    if (const LSTATUS status = key.Open(); status != ERROR_SUCCESS)
    {
        logger->LogFormat(Information, Internals, "[GetLogToFileFromReg] Failed to open registry. Status: 0x%x",
                          static_cast<unsigned int>(status));
        return;
    }

    int32_t value = 0;
    if (const LSTATUS status = key.Query(L"LogToFile", &value); status != ERROR_SUCCESS)
    {
        logger->LogFormat(Information, Internals, "[GetLogToFileFromReg] Failed to query registry key value with status: 0x%x.",
                          static_cast<unsigned int>(status));
    }
    else
    {
        *logToFile = value != 0;
        logger->LogFormat(Information, Internals, "[GetLogToFileFromReg] Log to file value: %d.", static_cast<int>(value));
    }

    if (const LSTATUS status = key.Close(); status != ERROR_SUCCESS)
    {
        logger->LogFormat(Warning, Internals, "[GetLogToFileFromReg] Failed to close registry key with status: 0x%x.",
                          static_cast<unsigned int>(status));
    }
}

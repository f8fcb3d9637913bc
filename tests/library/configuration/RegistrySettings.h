#pragma once

#include "library/configuration/ConfigurationReader.h"
#include "tests/library/configuration/Lines.h"
#include "tests/support/RecordingLogger.h"
#include "tests/support/Registry.h"

#include <gtest/gtest.h>

/// A reader, and at first no settings key.
class RegistrySettingsTest : public testing::Test
{
protected:
    RegistrySettingsTest()
    {
        RemoveSettingsKey();
    }
    ~RegistrySettingsTest() override
    {
        RemoveSettingsKey();
    }

    /// Reads a level: for the logger, or for the engine.
    HRESULT GetLoggerLevel(uint32_t* level)
    {
        return reader.GetLoggerSeverityLevelFromRegistry(level, L"LoggerLevel", 5);
    }
    HRESULT GetEngineLevel(uint32_t* level)
    {
        return reader.GetLoggerSeverityLevelFromRegistry(level, L"SDKLoggerLevel", 6);
    }

    const std::string OfLevel = "GetLoggerSeverityLevelFromRegistry";
    const std::string OfFile = "GetLogToFileFromReg";

    RecordingLogger logger;
    ConfigurationReader reader{"missing.xml", &logger};
};

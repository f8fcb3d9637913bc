#include "library/configuration/ConfigurationReader.h"
#include "tests/support/FaultInjector.h"
#include "tests/support/RecordingLogger.h"
#include "tests/support/Registry.h"
#include "tests/support/RegistryDouble.h"

#include <gmock/gmock.h>

namespace
{

using testing::ElementsAre;

class RegistrySettingsFaults : public testing::Test
{
protected:
    RegistrySettingsFaults()
    {
        RemoveSettingsKey();
        WriteSettingsDword(L"LoggerLevel", 4);
        WriteSettingsDword(L"SDKLoggerLevel", 7);
        WriteSettingsDword(L"LogToFile", 1);
    }
    ~RegistrySettingsFaults() override
    {
        RemoveSettingsKey();
        EXPECT_EQ(OpenRegistryKeys(), 0U);
    }

    RecordingLogger logger;
    ConfigurationReader reader{"missing.xml", &logger};
    uint32_t level = 2;
    bool logToFile = false;
};

const LogLine LevelCloseFailure =
    LogFormat(3, 1, "[GetLoggerSeverityLevelFromRegistry] Failed to close registry key with status: 0x6.");
const LogLine FileCloseFailure = LogFormat(3, 1, "[GetLogToFileFromReg] Failed to close registry key with status: 0x6.");

TEST_F(RegistrySettingsFaults, EveryReadClosesItsKey)
{
    EXPECT_EQ(reader.GetLoggerSeverityLevelFromRegistry(&level, L"LoggerLevel", 5), S_OK);
    EXPECT_EQ(OpenRegistryKeys(), 0U);
    EXPECT_EQ(reader.GetLoggerSeverityLevelFromRegistry(&level, L"SDKLoggerLevel", 6), E_FAIL);
    EXPECT_EQ(OpenRegistryKeys(), 0U);
    EXPECT_EQ(reader.GetLoggerSeverityLevelFromRegistry(&level, L"Missing", 6), E_FAIL);
    EXPECT_EQ(OpenRegistryKeys(), 0U);
    reader.GetLogToFileFromReg(&logToFile);
    EXPECT_EQ(OpenRegistryKeys(), 0U);
}

TEST_F(RegistrySettingsFaults, TheOpenFailuresStatusIsLogged)
{
    const FaultPlan plan = FaultPlan::From(1, FallibleCall::RegistryOpen);
    EXPECT_EQ(reader.GetLoggerSeverityLevelFromRegistry(&level, L"LoggerLevel", 5), E_FAIL);
    reader.GetLogToFileFromReg(&logToFile);
    EXPECT_EQ(level, 2U);
    EXPECT_FALSE(logToFile);
    EXPECT_THAT(logger.lines,
                ElementsAre(LogFormat(4, 1, "[GetLoggerSeverityLevelFromRegistry] Failed to open registry. Status: 0x5"),
                            LogFormat(4, 1, "[GetLogToFileFromReg] Failed to open registry. Status: 0x5")));
}

TEST_F(RegistrySettingsFaults, TheQueryFailuresStatusIsLogged)
{
    const FaultPlan plan = FaultPlan::From(1, FallibleCall::RegistryQuery);
    EXPECT_EQ(reader.GetLoggerSeverityLevelFromRegistry(&level, L"LoggerLevel", 5), E_FAIL);
    reader.GetLogToFileFromReg(&logToFile);
    EXPECT_EQ(level, 2U);
    EXPECT_FALSE(logToFile);
    EXPECT_THAT(logger.lines,
                ElementsAre(LogFormat(4, 1,
                                      "[GetLoggerSeverityLevelFromRegistry] Failed to query registry key L value with status: "
                                      "0x5.Setting logger level to: 2"),
                            LogFormat(4, 1, "[GetLogToFileFromReg] Failed to query registry key value with status: 0x5.")));
}

TEST_F(RegistrySettingsFaults, AFailedCloseIsLoggedAndLeavesTheResult)
{
    const FaultPlan plan = FaultPlan::From(1, FallibleCall::RegistryClose);
    EXPECT_EQ(reader.GetLoggerSeverityLevelFromRegistry(&level, L"LoggerLevel", 5), S_OK);
    reader.GetLogToFileFromReg(&logToFile);
    EXPECT_EQ(level, 4U);
    EXPECT_TRUE(logToFile);
    EXPECT_THAT(logger.lines,
                ElementsAre(LogFormat(4, 1, "[GetLoggerSeverityLevelFromRegistry] Logger L severity level: 4."),
                            LevelCloseFailure, LogFormat(4, 1, "[GetLogToFileFromReg] Log to file value: 1."), FileCloseFailure));
}

TEST_F(RegistrySettingsFaults, AFailedCloseIsLoggedAfterALevelOutOfRange)
{
    const FaultPlan plan = FaultPlan::From(1, FallibleCall::RegistryClose);
    EXPECT_EQ(reader.GetLoggerSeverityLevelFromRegistry(&level, L"SDKLoggerLevel", 6), E_FAIL);
    EXPECT_EQ(level, 2U);
    EXPECT_THAT(logger.lines, ElementsAre(LogFormat(3, 1,
                                                    "[GetLoggerSeverityLevelFromRegistry] Logger S level for key out of range "
                                                    "[0, 6].Actual value: 2. Using default level: NO_LOGS."),
                                          LevelCloseFailure));
}

TEST_F(RegistrySettingsFaults, AFailedCloseIsLoggedAfterAFailedQuery)
{
    RemoveSettingsKey();
    WriteSettingsDword(L"Other", 1);
    const FaultPlan plan = FaultPlan::From(1, FallibleCall::RegistryClose);
    EXPECT_EQ(reader.GetLoggerSeverityLevelFromRegistry(&level, L"LoggerLevel", 5), E_FAIL);
    reader.GetLogToFileFromReg(&logToFile);
    EXPECT_THAT(logger.lines,
                ElementsAre(LogFormat(4, 1,
                                      "[GetLoggerSeverityLevelFromRegistry] Failed to query registry key L value with status: "
                                      "0x2.Setting logger level to: 2"),
                            LevelCloseFailure,
                            LogFormat(4, 1, "[GetLogToFileFromReg] Failed to query registry key value with status: 0x2."),
                            FileCloseFailure));
}

} // namespace

#include "library/configuration/ConfigurationReader.h"
#include "tests/support/RecordingLogger.h"
#include "tests/support/Registry.h"

#include <gmock/gmock.h>

namespace
{

using testing::ElementsAre;

class RegistrySettings : public testing::Test
{
protected:
    RegistrySettings()
    {
        RemoveSettingsKey();
    }
    ~RegistrySettings() override
    {
        RemoveSettingsKey();
    }

    RecordingLogger logger;
    ConfigurationReader reader{"missing.xml", &logger};
};

struct LevelCase
{
    const wchar_t* name;
    int32_t maxLevel;
    uint32_t defaultLevel;
    uint32_t value;
    HRESULT result;
    uint32_t level;
    LogLine line;
};

LogLine Taken(const std::string& name, uint32_t level)
{
    return LogFormat(4, 1,
                     "[GetLoggerSeverityLevelFromRegistry] Logger " + name + " severity level: " + std::to_string(level) + ".");
}

LogLine OutOfRange(const std::string& name, int32_t maxLevel, uint32_t level)
{
    return LogFormat(3, 1,
                     "[GetLoggerSeverityLevelFromRegistry] Logger " + name + " level for key out of range [0, " +
                         std::to_string(maxLevel) + "].Actual value: " + std::to_string(level) +
                         ". Using default level: NO_LOGS.");
}

// Kept: a wide name handed to "%s" comes out as its first character, "Actual value" is the caller's default, and NO_LOGS is
// named whatever that default is.
TEST_F(RegistrySettings, TakesALevelInRangeAndKeepsTheDefaultOtherwise)
{
    const LevelCase cases[]{
        {L"LoggerLevel", 5, 0, 0, S_OK, 0, Taken("L", 0)},
        {L"LoggerLevel", 5, 0, 1, S_OK, 1, Taken("L", 1)},
        {L"LoggerLevel", 5, 0, 5, S_OK, 5, Taken("L", 5)},
        {L"LoggerLevel", 5, 0, 6, E_FAIL, 0, OutOfRange("L", 5, 0)},
        {L"LoggerLevel", 5, 0, 0x7FFFFFFF, E_FAIL, 0, OutOfRange("L", 5, 0)},
        {L"LoggerLevel", 5, 0, 0x80000000, E_FAIL, 0, OutOfRange("L", 5, 0)},
        {L"LoggerLevel", 5, 0, 0xFFFFFFFF, E_FAIL, 0, OutOfRange("L", 5, 0)},
        {L"SDKLoggerLevel", 6, 3, 0, S_OK, 0, Taken("S", 0)},
        {L"SDKLoggerLevel", 6, 3, 6, S_OK, 6, Taken("S", 6)},
        {L"SDKLoggerLevel", 6, 3, 7, E_FAIL, 3, OutOfRange("S", 6, 3)},
        {L"SDKLoggerLevel", 6, 3, 0xFFFFFFFF, E_FAIL, 3, OutOfRange("S", 6, 3)},
    };
    for (const LevelCase& levelCase : cases)
    {
        SCOPED_TRACE(testing::Message() << levelCase.line << " for " << levelCase.value);
        WriteSettingsDword(levelCase.name, levelCase.value);
        uint32_t level = levelCase.defaultLevel;
        EXPECT_EQ(reader.GetLoggerSeverityLevelFromRegistry(&level, levelCase.name, levelCase.maxLevel), levelCase.result);
        EXPECT_EQ(level, levelCase.level);
        EXPECT_THAT(logger.Take(), ElementsAre(levelCase.line));
    }
}

TEST_F(RegistrySettings, WithoutTheKeyLevelsStayAtTheirDefaults)
{
    const LogLine failure = LogFormat(4, 1, "[GetLoggerSeverityLevelFromRegistry] Failed to open registry. Status: 0x2");
    uint32_t loggerLevel = 0;
    uint32_t sdkLoggerLevel = 3;
    EXPECT_EQ(reader.GetLoggerSeverityLevelFromRegistry(&loggerLevel, L"LoggerLevel", 5), E_FAIL);
    EXPECT_EQ(reader.GetLoggerSeverityLevelFromRegistry(&sdkLoggerLevel, L"SDKLoggerLevel", 6), E_FAIL);
    EXPECT_EQ(loggerLevel, 0U);
    EXPECT_EQ(sdkLoggerLevel, 3U);
    EXPECT_THAT(logger.lines, ElementsAre(failure, failure));
}

TEST_F(RegistrySettings, WithoutTheValueALevelStaysAtItsDefault)
{
    WriteSettingsDword(L"LoggerLevel", 5);
    uint32_t level = 3;
    EXPECT_EQ(reader.GetLoggerSeverityLevelFromRegistry(&level, L"SDKLoggerLevel", 6), E_FAIL);
    EXPECT_EQ(level, 3U);
    EXPECT_THAT(logger.lines, ElementsAre(LogFormat(4, 1,
                                                    "[GetLoggerSeverityLevelFromRegistry] Failed to query registry key S value "
                                                    "with status: 0x2.Setting logger level to: 3")));
}

TEST_F(RegistrySettings, ALevelOfEightBytesIsNotRead)
{
    WriteSettingsQword(L"LoggerLevel", 2);
    uint32_t level = 1;
    EXPECT_EQ(reader.GetLoggerSeverityLevelFromRegistry(&level, L"LoggerLevel", 5), E_FAIL);
    EXPECT_EQ(level, 1U);
    EXPECT_THAT(logger.lines, ElementsAre(LogFormat(4, 1,
                                                    "[GetLoggerSeverityLevelFromRegistry] Failed to query registry key L value "
                                                    "with status: 0xea.Setting logger level to: 1")));
}

TEST_F(RegistrySettings, AnyValueButZeroLogsToTheFile)
{
    const std::pair<uint32_t, std::string> cases[]{{0, "0"}, {1, "1"}, {2, "2"}, {0x7FFFFFFF, "2147483647"}, {0xFFFFFFFF, "-1"}};
    for (const auto& [value, text] : cases)
    {
        SCOPED_TRACE(text);
        WriteSettingsDword(L"LogToFile", value);
        bool logToFile = value == 0;
        reader.GetLogToFileFromReg(&logToFile);
        EXPECT_EQ(logToFile, value != 0);
        EXPECT_THAT(logger.Take(), ElementsAre(LogFormat(4, 1, "[GetLogToFileFromReg] Log to file value: " + text + ".")));
    }
}

struct UnreadLogToFileCase
{
    const char* description;
    void (*prepare)();
    LogLine line;
};

TEST_F(RegistrySettings, LogToFileThatCannotBeReadStaysAsItWas)
{
    const UnreadLogToFileCase cases[]{
        {"no key", [] {}, LogFormat(4, 1, "[GetLogToFileFromReg] Failed to open registry. Status: 0x2")},
        {"no value", [] { WriteSettingsDword(L"LoggerLevel", 1); },
         LogFormat(4, 1, "[GetLogToFileFromReg] Failed to query registry key value with status: 0x2.")},
        {"eight bytes", [] { WriteSettingsQword(L"LogToFile", 1); },
         LogFormat(4, 1, "[GetLogToFileFromReg] Failed to query registry key value with status: 0xea.")},
    };
    for (const UnreadLogToFileCase& unread : cases)
    {
        for (const bool before : {false, true})
        {
            SCOPED_TRACE(testing::Message() << unread.description << ", " << before);
            RemoveSettingsKey();
            unread.prepare();
            bool logToFile = before;
            reader.GetLogToFileFromReg(&logToFile);
            EXPECT_EQ(logToFile, before);
            EXPECT_THAT(logger.Take(), ElementsAre(unread.line));
        }
    }
}

} // namespace

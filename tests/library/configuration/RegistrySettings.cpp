#include "tests/library/configuration/RegistrySettings.h"

#include <gmock/gmock.h>

namespace RegistrySettingsTests
{

using namespace ConfigurationLines;
using testing::ElementsAre;

using RegistrySettings = RegistrySettingsTest;

// Kept: a wide name handed to "%s" comes out as its first character, "Actual value" is the caller's default, and NO_LOGS is
// named whatever that default is.
TEST_F(RegistrySettings, TakesALevelInRangeAndKeepsTheDefaultOtherwise)
{
    for (const uint32_t value : {0U, 1U, 5U, 6U, 7U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU})
    {
        SCOPED_TRACE(value);
        WriteSettingsDword(L"LoggerLevel", value);
        WriteSettingsDword(L"SDKLoggerLevel", value);
        uint32_t level = 0;
        EXPECT_EQ(GetLoggerLevel(&level), value <= 5 ? S_OK : E_FAIL);
        EXPECT_EQ(level, value <= 5 ? value : 0);
        EXPECT_THAT(logger.Take(), ElementsAre(value <= 5 ? LevelTaken("L", value) : LevelOutOfRange("L", 5, 0)));

        level = 3;
        EXPECT_EQ(GetEngineLevel(&level), value <= 6 ? S_OK : E_FAIL);
        EXPECT_EQ(level, value <= 6 ? value : 3);
        EXPECT_THAT(logger.Take(), ElementsAre(value <= 6 ? LevelTaken("S", value) : LevelOutOfRange("S", 6, 3)));
    }
}

TEST_F(RegistrySettings, WhatCannotBeReadStaysAsItWas)
{
    struct Case
    {
        const char* description;
        void (*prepare)();
        LogLine loggerLevel, engineLevel, logToFile;
    };
    for (const Case& row :
         {Case{"no key", [] {}, RegistryNotOpened(OfLevel, "2"), RegistryNotOpened(OfLevel, "2"), RegistryNotOpened(OfFile, "2")},
          Case{"no value", [] { WriteSettingsDword(L"Other", 1); }, LevelNotRead("L", "2", 1), LevelNotRead("S", "2", 3),
               LogToFileNotRead("2")},
          Case{"eight bytes",
               [] {
                   for (const wchar_t* name : {L"LoggerLevel", L"SDKLoggerLevel", L"LogToFile"})
                   {
                       WriteSettingsQword(name, 2);
                   }
               },
               LevelNotRead("L", "ea", 1), LevelNotRead("S", "ea", 3), LogToFileNotRead("ea")}})
    {
        SCOPED_TRACE(row.description);
        row.prepare();
        uint32_t loggerLevel = 1;
        uint32_t engineLevel = 3;
        EXPECT_EQ(GetLoggerLevel(&loggerLevel), E_FAIL);
        EXPECT_EQ(GetEngineLevel(&engineLevel), E_FAIL);
        EXPECT_EQ(loggerLevel, 1U);
        EXPECT_EQ(engineLevel, 3U);
        for (const bool before : {false, true})
        {
            bool logToFile = before;
            reader.GetLogToFileFromReg(&logToFile);
            EXPECT_EQ(logToFile, before);
        }
        EXPECT_THAT(logger.Take(), ElementsAre(row.loggerLevel, row.engineLevel, row.logToFile, row.logToFile));
    }
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
        EXPECT_THAT(logger.Take(), ElementsAre(LogToFileTaken(text)));
    }
}

} // namespace RegistrySettingsTests

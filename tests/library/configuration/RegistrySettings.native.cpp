#include "tests/library/configuration/RegistrySettings.h"
#include "tests/support/FaultInjector.h"
#include "tests/support/RegistryDouble.h"

#include <gmock/gmock.h>

#include <optional>

namespace RegistrySettingsFaultsTests
{

using namespace ConfigurationLines;
using testing::ElementsAreArray;

class RegistrySettingsFaults : public RegistrySettingsTest
{
protected:
    RegistrySettingsFaults()
    {
        WriteSettingsDword(L"LoggerLevel", 4);
        WriteSettingsDword(L"SDKLoggerLevel", 7);
        WriteSettingsDword(L"LogToFile", 1);
    }

    /// Reads the level 4, the level 7, a level that is not there, and the flag.
    /// @param flag what the flag is then
    void ReadAll(HRESULT result, uint32_t expectedLevel, bool flag)
    {
        uint32_t level = 2;
        bool logToFile = false;
        EXPECT_EQ(GetLoggerLevel(&level), result);
        EXPECT_EQ(level, expectedLevel);
        EXPECT_EQ(OpenRegistryKeys(), 0U);
        level = 2;
        EXPECT_EQ(GetEngineLevel(&level), E_FAIL);
        EXPECT_EQ(OpenRegistryKeys(), 0U);
        EXPECT_EQ(reader.GetLoggerSeverityLevelFromRegistry(&level, L"Missing", 6), E_FAIL);
        EXPECT_EQ(OpenRegistryKeys(), 0U);
        EXPECT_EQ(level, 2U);
        reader.GetLogToFileFromReg(&logToFile);
        EXPECT_EQ(logToFile, flag);
        EXPECT_EQ(OpenRegistryKeys(), 0U);
        EXPECT_EQ(UnknownRegistryKeysClosed(), unknownKeysClosed);
    }

    const std::size_t unknownKeysClosed = UnknownRegistryKeysClosed();
};

TEST_F(RegistrySettingsFaults, EveryReadClosesItsKeyAndLogsTheStatusOfWhatFails)
{
    struct Case
    {
        const char* description;
        std::optional<FallibleCall> failing;
        HRESULT result;
        uint32_t level;
        bool flag;
        std::vector<LogLine> lines;
    };
    const LogLine levelNotOpened = RegistryNotOpened(OfLevel, "5");
    const LogLine levelNotClosed = RegistryNotClosed(OfLevel);
    for (const Case& row :
         {Case{"nothing fails",
               std::nullopt,
               S_OK,
               4,
               true,
               {LevelTaken("L", 4), LevelOutOfRange("S", 6, 2), LevelNotRead("M", "2", 2), LogToFileTaken("1")}},
          Case{"open",
               FallibleCall::RegistryOpen,
               E_FAIL,
               2,
               false,
               {levelNotOpened, levelNotOpened, levelNotOpened, RegistryNotOpened(OfFile, "5")}},
          Case{"query",
               FallibleCall::RegistryQuery,
               E_FAIL,
               2,
               false,
               {LevelNotRead("L", "5", 2), LevelNotRead("S", "5", 2), LevelNotRead("M", "5", 2), LogToFileNotRead("5")}},
          Case{"close: the result stays",
               FallibleCall::RegistryClose,
               S_OK,
               4,
               true,
               {LevelTaken("L", 4), levelNotClosed, LevelOutOfRange("S", 6, 2), levelNotClosed, LevelNotRead("M", "2", 2),
                levelNotClosed, LogToFileTaken("1"), RegistryNotClosed(OfFile)}}})
    {
        SCOPED_TRACE(row.description);
        const FaultPlan plan = row.failing ? FaultPlan::From(1, row.failing) : FaultPlan::Count();
        ReadAll(row.result, row.level, row.flag);
        EXPECT_THAT(logger.Take(), ElementsAreArray(row.lines));
    }
}

TEST_F(RegistrySettingsFaults, AFailedCloseIsLoggedAfterAFlagThatIsNotThere)
{
    RemoveSettingsKey();
    WriteSettingsDword(L"Other", 1);
    const FaultPlan plan = FaultPlan::From(1, FallibleCall::RegistryClose);
    bool logToFile = false;
    reader.GetLogToFileFromReg(&logToFile);
    EXPECT_THAT(logger.lines, testing::ElementsAre(LogToFileNotRead("2"), RegistryNotClosed(OfFile)));
    EXPECT_EQ(OpenRegistryKeys(), 0U);
}

} // namespace RegistrySettingsFaultsTests

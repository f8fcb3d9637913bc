#include "console/hosting/ConsoleLogger.h"

#include "console/text/CommandFailure.h"
#include "console/text/Utf8Path.h"
#include "tests/support/TemporaryFolder.h"

#include <windows.h>

#include <gmock/gmock.h>

#include <iostream>
#include <sstream>

namespace ConsoleLoggerOnRealTests
{

using namespace velox::console;
using testing::HasSubstr;

class ConsoleLogger : public testing::Test
{
protected:
    std::string Written() const
    {
        return ReadWholeFile(path);
    }

    TemporaryFolder folder;
    std::string path = folder.Path() + "\\all.log";
};

TEST_F(ConsoleLogger, LinesAreKeptUntilTheyAreTaken)
{
    velox::console::ConsoleLogger logger({});
    logger.Log(4, 0, "plain");
    logger.LogWithStatus(1, 0, "failed", E_FAIL);
    logger.LogWithCode(1, 1, "refused", 121);
    logger.LogFormat(5, 1, "%s has %u bytes", "fw.bin", 7U);
    const std::vector<LoggedLine> lines = logger.TakeLines();
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_EQ(lines[0].level, 4U);
    EXPECT_EQ(lines[0].message, "plain");
    EXPECT_FALSE(lines[0].result || lines[0].engineStatus);
    EXPECT_EQ(lines[1].result, E_FAIL);
    EXPECT_EQ(lines[2].source, 1U);
    EXPECT_EQ(lines[2].engineStatus, 121U);
    EXPECT_EQ(lines[3].message, "fw.bin has 7 bytes");
    EXPECT_TRUE(logger.TakeLines().empty());
}

TEST_F(ConsoleLogger, TheWideTextOfOneFunctionsLinesIsReadAsSuch)
{
    velox::console::ConsoleLogger logger({});
    logger.LogFormat(3, 1, "[GetLoggerSeverityLevelFromRegistry] No value %s.", L"LoggerLevel");
    logger.LogFormat(3, 1, "[Another] %s.", "narrow");
    const std::vector<LoggedLine> lines = logger.TakeLines();
    EXPECT_EQ(lines[0].message, "[GetLoggerSeverityLevelFromRegistry] No value LoggerLevel.");
    EXPECT_EQ(lines[1].message, "[Another] narrow.");
}

TEST_F(ConsoleLogger, VerboseShowsEveryLineWhateverTheLevel)
{
    EngineOutput stream;
    stream.Begin();
    velox::console::ConsoleLogger logger({true, {}});
    logger.SetLevel(0);
    logger.Log(5, 1, "a detail");
    EXPECT_EQ(stream.TakeLines(), std::vector<std::string>{"| detail       internals  a detail"});
    stream.End();
}

TEST_F(ConsoleLogger, WhatTheEngineWritesIsALineOfTheLogInItsOrder)
{
    velox::console::ConsoleLogger logger({});
    logger.Begin();
    logger.Log(4, 0, "before");
    std::fprintf(stderr, "engine: take heard\n");
    logger.Log(4, 0, "after");
    const std::vector<LoggedLine> lines = logger.TakeLines();
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[1].message, "engine: take heard");
    EXPECT_EQ(lines[1].source, EngineSource);
    EXPECT_EQ(lines[2].message, "after");
}

TEST_F(ConsoleLogger, ALogFileGetsEveryLineBehindWhatItHolds)
{
    WriteWholeFile(path, "before\n");
    velox::console::ConsoleLogger logger({false, PathFromUtf8(path)});
    logger.SetLevel(1);
    logger.SetLogToFile(false); // the command line counts
    logger.Log(5, 1, "a detail");
    EXPECT_THAT(Written(), HasSubstr("before\n"));
    EXPECT_THAT(Written(), HasSubstr("a detail"));
}

TEST_F(ConsoleLogger, TheRegistrysFileGetsWhatItsLevelLetsPass)
{
    const std::filesystem::path file = std::filesystem::temp_directory_path() / "velox-kws.log";
    std::filesystem::remove(file);
    {
        velox::console::ConsoleLogger logger({});
        logger.Log(1, 0, "too early");
        logger.SetLogToFile(true);
        logger.SetLevel(3);
        logger.Log(3, 0, "a warning");
        logger.Log(4, 0, "an information");
        logger.SetLogToFile(false);
        logger.Log(1, 0, "too late");
    }
    const std::string written = ReadWholeFile(Utf8(file));
    EXPECT_THAT(written, HasSubstr("a warning"));
    EXPECT_EQ(std::count(written.begin(), written.end(), '\n'), 1);
    std::filesystem::remove(file);
}

TEST_F(ConsoleLogger, AFileThatCannotBeWrittenIsAFailure)
{
    try
    {
        const velox::console::ConsoleLogger logger({false, PathFromUtf8(folder.Path())});
        ADD_FAILURE();
    }
    catch (const CommandFailure& failure)
    {
        EXPECT_EQ(failure.exitCode, ExitCode::WriteFailed);
        EXPECT_THAT(failure.what(), HasSubstr(folder.Path()));
    }
}

} // namespace ConsoleLoggerOnRealTests

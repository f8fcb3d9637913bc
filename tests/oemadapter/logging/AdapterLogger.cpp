#include "oemadapter/logging/AdapterLogger.h"

#include "tests/oemadapter/support/LogText.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace AdapterLoggerTests
{

using testing::ElementsAre;
using testing::IsEmpty;

class AdapterLogger : public testing::Test
{
protected:
    AdapterLogger()
    {
        logger.SetFile(&path);
        logger.SetLevel(5);
        logger.SetLogToFile(true);
        logger.operation.Begin("IThing::Method");
    }

    /// The lines so far, without their stamps.
    std::vector<std::string> Lines() const
    {
        constexpr std::size_t Stamp = sizeof("2026-02-03T04:05:06.789Z     1     2");
        const std::string text = log.Read();
        std::vector<std::string> lines;
        std::size_t start = 0;
        for (std::size_t end = text.find("\r\n"); end != std::string::npos; end = text.find("\r\n", start))
        {
            lines.push_back(text.substr(start + Stamp, end - start - Stamp));
            start = end + 2;
        }
        EXPECT_EQ(start, text.size());
        return lines;
    }

    LogText log;
    const std::u16string path = log.Path();
    velox::oemadapter::AdapterLogger logger;
};

TEST_F(AdapterLogger, WritesOneLineForEachMessage)
{
    logger.Log(4, 0, "[Verify] Entry.");
    logger.LogWithStatus(1, 1, "Failed.", E_INVALIDARG);
    logger.LogWithCode(2, 2, "Engine.", 7);
    logger.LogFormat(5, 0, "%d of %s: %llu", 3, "five", 1ULL << 40U);
    EXPECT_THAT(Lines(),
                ElementsAre("4 library IThing::Method [Verify] Entry.", "1 internals IThing::Method Failed. 0x80070057",
                            "2 adapter IThing::Method Engine. 0x00000007", "5 library IThing::Method 3 of five: 1099511627776"));
}

TEST_F(AdapterLogger, ShowsLinesUpToItsLevelAndCountsAll)
{
    logger.SetLevel(2);
    logger.Log(2, 0, "shown");
    logger.Log(3, 0, "not shown");
    EXPECT_THAT(Lines(), ElementsAre("2 library IThing::Method shown"));
    EXPECT_EQ(logger.operation.Lines(3), 1U);
    EXPECT_EQ(logger.operation.Text(), "2 shown\r\n3 not shown\r\n");
}

TEST_F(AdapterLogger, LevelZeroShowsNothing)
{
    logger.SetLevel(0);
    logger.Log(1, 0, "not shown");
    EXPECT_THAT(Lines(), IsEmpty());
    EXPECT_EQ(logger.operation.Lines(1), 1U);
}

TEST_F(AdapterLogger, WritesNoFileWithoutBeingAsked)
{
    logger.SetLogToFile(false);
    logger.Log(1, 0, "not written");
    logger.SetLogToFile(true);
    logger.Log(1, 0, "written");
    EXPECT_THAT(Lines(), ElementsAre("1 library IThing::Method written"));
}

TEST_F(AdapterLogger, ANewFilesPathClosesTheOldOne)
{
    const std::u16string other = path;
    logger.SetFile(&other);
    logger.Log(1, 0, "not written");
    EXPECT_THAT(Lines(), IsEmpty());
}

TEST_F(AdapterLogger, NeedsNoPath)
{
    velox::oemadapter::AdapterLogger without;
    without.SetLogToFile(true);
    without.Log(1, 0, "only for the debugger");
    EXPECT_EQ(without.operation.Lines(1), 1U);
    EXPECT_THAT(Lines(), IsEmpty());
}

TEST_F(AdapterLogger, BeforeTheLibraryTellsTheLevelFailuresAreShown)
{
    velox::oemadapter::AdapterLogger fresh;
    fresh.SetFile(&path);
    fresh.SetLogToFile(true);
    fresh.Log(2, 0, "not shown");
    fresh.Log(1, 0, "shown");
    EXPECT_THAT(Lines(), ElementsAre("1 library  shown"));
}

TEST_F(AdapterLogger, ControlCharactersBecomeSpaces)
{
    logger.Log(1, 0,
               std::string("a\r\nb\tc\0d\x7F"
                           "e\xE9",
                           11));
    logger.LogFormat(1, 0, "%s", "one\ntwo");
    EXPECT_THAT(Lines(), ElementsAre("1 library IThing::Method a  b c d e\xE9", "1 library IThing::Method one two"));
}

TEST_F(AdapterLogger, LongMessagesAreCut)
{
    constexpr std::size_t Longest = 1024;
    logger.Log(1, 0, std::string(Longest, 'x'));
    logger.LogWithStatus(1, 0, std::string(Longest + 1, 'x'), E_FAIL);
    logger.LogFormat(1, 0, "%s", std::string(Longest, 'x').c_str());
    logger.LogFormat(1, 0, "%s", std::string(100 * Longest, 'x').c_str());
    const std::string whole = "1 library IThing::Method " + std::string(Longest, 'x');
    const std::string cut = "1 library IThing::Method " + std::string(Longest - 3, 'x') + "...";
    EXPECT_THAT(Lines(), ElementsAre(whole, cut + " 0x80004005", whole, cut));
}

TEST_F(AdapterLogger, AnEmptyMessageIsALineOfItsOwn)
{
    logger.LogFormat(1, 0, "%s", "");
    EXPECT_THAT(Lines(), ElementsAre("1 library IThing::Method "));
}

TEST_F(AdapterLogger, ALongMethodNameLeavesRoomForTheMessage)
{
    const std::string method(500, 'm');
    logger.operation.Begin(method.c_str());
    logger.LogWithStatus(1, 0, std::string(2000, 'x'), E_FAIL);
    EXPECT_THAT(Lines(), ElementsAre("1 library " + std::string(100, 'm') + " " + std::string(1021, 'x') + "... 0x80004005"));
}

TEST_F(AdapterLogger, AWideTextForANarrowOneIsReadNoFurtherThanItsFirstLetter)
{
    logger.LogFormat(4, 1, "Logger %s severity level: %d.", L"LoggerLevel", 3);
    EXPECT_THAT(Lines(), ElementsAre("4 internals IThing::Method Logger L severity level: 3."));
}

} // namespace AdapterLoggerTests

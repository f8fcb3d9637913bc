#include "tests/support/RecordingLogger.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace RecordingLoggerTests
{

using testing::ElementsAre;
using testing::IsEmpty;

TEST(RecordingLogger, KeepsEveryOperationInOrder)
{
    RecordingLogger logger;
    logger.Log(1, 0, "plain");
    logger.LogWithStatus(2, 1, "status", -2);
    logger.LogWithCode(3, 0, "code", 7);
    logger.LogFormat(4, 1, "%s is %d", "four", 4);
    logger.SetLevel(5);
    logger.SetLogToFile(true);
    logger.SetLogToFile(false);
    EXPECT_THAT(logger.lines, ElementsAre(Log(1, 0, "plain"), LogWithStatus(2, 1, "status", -2), LogWithCode(3, 0, "code", 7),
                                          LogFormat(4, 1, "four is 4"), SetLevel(5), SetLogToFile(true), SetLogToFile(false)));
}

TEST(RecordingLogger, FormatsTextOfAnyLength)
{
    RecordingLogger logger;
    const std::string text(5000, 'x');
    logger.LogFormat(5, 1, "[%s]", text.c_str());
    EXPECT_THAT(logger.lines, ElementsAre(LogFormat(5, 1, "[" + text + "]")));
}

TEST(RecordingLogger, DistinguishesLinesInEveryPart)
{
    const LogLine line = LogWithStatus(1, 0, "text", 5);
    EXPECT_NE(line, LogWithStatus(2, 0, "text", 5));
    EXPECT_NE(line, LogWithStatus(1, 1, "text", 5));
    EXPECT_NE(line, LogWithStatus(1, 0, "Text", 5));
    EXPECT_NE(line, LogWithStatus(1, 0, "text", 6));
    EXPECT_NE(line, LogWithCode(1, 0, "text", 5));
    EXPECT_NE(Log(1, 0, "text"), LogFormat(1, 0, "text"));
}

TEST(RecordingLogger, TakeForgetsTheLines)
{
    RecordingLogger logger;
    logger.Log(1, 0, "first");
    EXPECT_THAT(logger.Take(), ElementsAre(Log(1, 0, "first")));
    EXPECT_THAT(logger.lines, IsEmpty());
    logger.Log(1, 0, "second");
    EXPECT_THAT(logger.Take(), ElementsAre(Log(1, 0, "second")));
}

TEST(RecordingLogger, LinesNeedNotBeKept)
{
    RecordingLogger logger;
    logger.keepLines = false;
    logger.Log(1, 0, "first");
    logger.LogFormat(1, 0, "%d", 2);
    logger.SetLogToFile(true);
    EXPECT_THAT(logger.lines, IsEmpty());
    EXPECT_EQ(logger.calls, 3U);
}

TEST(RecordingLogger, AskedToThrowItDoesNotKeepTheLine)
{
    RecordingLogger logger;
    logger.onLine = [](const LogLine& line) {
        if (line == SetLevel(3))
        {
            throw std::runtime_error("refused");
        }
    };
    logger.SetLevel(2);
    EXPECT_THROW(logger.SetLevel(3), std::runtime_error);
    EXPECT_THAT(logger.lines, ElementsAre(SetLevel(2)));
}

} // namespace RecordingLoggerTests

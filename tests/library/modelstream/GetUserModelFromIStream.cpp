#include "library/modelstream/UserModelStream.h"
#include "tests/support/AdapterTest.h"
#include "tests/support/ScriptedStream.h"

#include <gmock/gmock.h>

namespace
{

using testing::ElementsAre;

const LogLine Entry = Log(4, 1, "[GetUserModelFromIStream] Entry.");
const LogLine Exit = Log(4, 1, "[GetUserModelFromIStream] Exit.");

LogLine Expected(uint32_t size)
{
    return LogFormat(5, 1, "[GetUserModelFromIStream] Expected user model size from IStream: " + std::to_string(size) + ".");
}

LogLine Success(uint32_t size)
{
    return LogFormat(5, 1,
                     "[GetUserModelFromIStream] User model data read successfully. Data size: " + std::to_string(size) + ".");
}

LogLine Failure(const std::string& status, uint32_t count, uint32_t size)
{
    return LogFormat(2, 1,
                     "[GetUserModelFromIStream] Reading user model data failed. Status: 0x" + status +
                         " . Data size: " + std::to_string(count) + " , expected: " + std::to_string(size) + ".");
}

class GetUserModelFromIStream : public AdapterTest
{
protected:
    /// Reads the model; the block comes to `model`, or stays `before` when the output was left alone.
    HRESULT Get(IStream* stream)
    {
        uint8_t* data = &before;
        const HRESULT result = ::GetUserModelFromIStream(stream, data, size, &logger);
        if (data != &before)
        {
            model.reset(data);
        }
        return result;
    }

    std::string Model() const
    {
        return {model.get(), model.get() + size};
    }

    uint8_t before = 0;
    std::unique_ptr<uint8_t[]> model;
    uint32_t size = 4711;
};

TEST_F(GetUserModelFromIStream, GivesTheWholeContentWithItsMagic)
{
    ScriptedStream stream("VWOV model");
    EXPECT_EQ(Get(&stream), S_OK);
    EXPECT_EQ(Model(), "VWOV model");
    EXPECT_THAT(logger.lines, ElementsAre(Entry, Expected(10), Success(10), Exit));
    EXPECT_THAT(stream.calls, ElementsAre("Seek(0, END)", "Seek(0, SET, no position)", "Read(10)"));
    EXPECT_EQ(stream.Content(), "VWOV model");
}

TEST_F(GetUserModelFromIStream, DoesNotLookForTheMagic)
{
    ScriptedStream stream("no model");
    EXPECT_EQ(Get(&stream), S_OK);
    EXPECT_EQ(Model(), "no model");
}

TEST_F(GetUserModelFromIStream, GivesTheFourBytesOfABareMagic)
{
    ScriptedStream stream("VWOV");
    EXPECT_EQ(Get(&stream), S_OK);
    EXPECT_EQ(Model(), "VWOV");
    EXPECT_THAT(logger.lines, ElementsAre(Entry, Expected(4), Success(4), Exit));
}

TEST_F(GetUserModelFromIStream, EmptyStreamGivesAnEmptyBlock)
{
    ScriptedStream stream;
    EXPECT_EQ(Get(&stream), S_OK);
    EXPECT_NE(model, nullptr);
    EXPECT_EQ(size, 0U);
    EXPECT_THAT(logger.lines, ElementsAre(Entry, Expected(0), Success(0), Exit));
    EXPECT_THAT(stream.calls, ElementsAre("Seek(0, END)", "Seek(0, SET, no position)", "Read(0)"));
}

TEST_F(GetUserModelFromIStream, GivesALargeModelUnchanged)
{
    std::string content(1U << 20, '\0');
    for (std::size_t i = 0; i < content.size(); ++i)
    {
        content[i] = static_cast<char>(i * 7 + i / 256);
    }
    ScriptedStream stream(content);
    EXPECT_EQ(Get(&stream), S_OK);
    EXPECT_TRUE(Model() == content);
}

TEST_F(GetUserModelFromIStream, FailedSeekToTheEndLeavesTheOutputs)
{
    ScriptedStream stream("VWOV model");
    stream.Answer("Seek", 1, STG_E_REVERTED);
    EXPECT_EQ(Get(&stream), STG_E_REVERTED);
    EXPECT_EQ(model, nullptr);
    EXPECT_EQ(size, 4711U);
    EXPECT_THAT(logger.lines, ElementsAre(Entry, Log(2, 1, "[GetUserModelFromIStream] Failed to set pointer to end of stream.")));
    EXPECT_THAT(stream.calls, ElementsAre("Seek(0, END)"));
}

TEST_F(GetUserModelFromIStream, FailedSeekToTheBeginningLeavesTheOutputsAndItsWordingIsKept)
{
    ScriptedStream stream("VWOV model");
    stream.Answer("Seek", 2, E_ACCESSDENIED);
    EXPECT_EQ(Get(&stream), E_ACCESSDENIED);
    EXPECT_EQ(model, nullptr);
    EXPECT_EQ(size, 4711U);
    EXPECT_THAT(logger.lines,
                ElementsAre(Entry, Log(2, 1, "[GetUserModelFromIStream] Failed set pointer to beggining of stream")));
    EXPECT_THAT(stream.calls, ElementsAre("Seek(0, END)", "Seek(0, SET, no position)"));
}

TEST_F(GetUserModelFromIStream, PositiveSeekResultsAreSuccesses)
{
    ScriptedStream stream("VWOV model");
    stream.Answer("Seek", 2, S_FALSE);
    EXPECT_EQ(Get(&stream), S_OK);
    // The seek to the beginning moved nothing, so the read came too late.
    EXPECT_THAT(logger.lines, ElementsAre(Entry, Expected(10), Failure("0", 0, 10), Exit));
}

TEST_F(GetUserModelFromIStream, TakesTheLow32BitsOfTheLength)
{
    struct Case
    {
        uint64_t end;
        uint32_t size;
    };
    for (const Case& one : {Case{0x1'0000'0000, 0}, Case{0x1'0000'0007, 7}, Case{0xFFFF'FFFF'0000'0004, 4}})
    {
        SCOPED_TRACE(one.end);
        ScriptedStream stream("VWOV model");
        stream.reportedEnd = one.end;
        EXPECT_EQ(Get(&stream), S_OK);
        EXPECT_EQ(Model(), std::string("VWOV model").substr(0, one.size));
        EXPECT_THAT(logger.Take(), ElementsAre(Entry, Expected(one.size), Success(one.size), Exit));
    }
}

struct ShortRead
{
    const char* description;
    HRESULT result;
    const char* status;
};

TEST_F(GetUserModelFromIStream, ShortReadGivesTheReadsOwnResultAndTheBlockWithZeros)
{
    for (const ShortRead& one : {ShortRead{"called a success", S_OK, "0"}, ShortRead{"called a positive result", S_FALSE, "1"},
                                 ShortRead{"called a failure", STG_E_READFAULT, "8003001e"}})
    {
        SCOPED_TRACE(one.description);
        ScriptedStream stream("VWOV model");
        stream.mostBytes = 6;
        stream.shortResult = one.result;
        EXPECT_EQ(Get(&stream), one.result);
        EXPECT_EQ(Model(), std::string("VWOV m\0\0\0\0", 10));
        EXPECT_THAT(logger.Take(), ElementsAre(Entry, Expected(10), Failure(one.status, 6, 10), Exit));
    }
}

TEST_F(GetUserModelFromIStream, ReadThatReportsNothingCountsAsNoBytes)
{
    for (const ShortRead& one : {ShortRead{"called a success", S_OK, "0"}, ShortRead{"called a failure", E_FAIL, "80004005"}})
    {
        SCOPED_TRACE(one.description);
        ScriptedStream stream("VWOV model");
        stream.Answer("Read", 1, one.result);
        EXPECT_EQ(Get(&stream), one.result);
        EXPECT_EQ(Model(), std::string(10, '\0'));
        EXPECT_THAT(logger.Take(), ElementsAre(Entry, Expected(10), Failure(one.status, 0, 10), Exit));
    }
}

TEST_F(GetUserModelFromIStream, FailedReadIsAFailureEvenWhenItReportsEveryByte)
{
    ScriptedStream stream("VWOV model");
    stream.Answer("Read", 1, STG_E_READFAULT);
    stream.claimedCount = 10;
    EXPECT_EQ(Get(&stream), STG_E_READFAULT);
    EXPECT_NE(model, nullptr);
    EXPECT_EQ(size, 10U);
    EXPECT_THAT(logger.lines, ElementsAre(Entry, Expected(10), Failure("8003001e", 10, 10), Exit));
}

TEST_F(GetUserModelFromIStream, PositiveResultOfAWholeReadIsHandedOnAfterTheSuccessLine)
{
    ScriptedStream stream("VWOV model");
    stream.Answer("Read", 1, S_FALSE);
    stream.claimedCount = 10;
    EXPECT_EQ(Get(&stream), S_FALSE);
    EXPECT_NE(model, nullptr);
    EXPECT_EQ(size, 10U);
    EXPECT_THAT(logger.lines, ElementsAre(Entry, Expected(10), Success(10), Exit));
}

TEST_F(GetUserModelFromIStream, CountAboveTheSizeIsReportedAndTouchesNothingBehindTheBlock)
{
    ScriptedStream stream("VWOV model");
    stream.claimedCount = 11;
    EXPECT_EQ(Get(&stream), S_OK);
    EXPECT_EQ(Model(), "VWOV model");
    EXPECT_THAT(logger.lines, ElementsAre(Entry, Expected(10), Failure("0", 11, 10), Exit));
}

} // namespace

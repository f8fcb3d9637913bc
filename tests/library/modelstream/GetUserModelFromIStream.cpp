#include "tests/library/modelstream/StreamTest.h"
#include "tests/support/ScriptedStream.h"

#include <gmock/gmock.h>

namespace GetUserModelFromIStreamTests
{

using namespace StreamLines;
using testing::ElementsAre;

using GetUserModelFromIStream = StreamTest;

TEST_F(GetUserModelFromIStream, GivesTheWholeContentAndDoesNotLookForTheMagic)
{
    std::string large(1U << 20, '\0');
    for (std::size_t i = 0; i < large.size(); ++i)
    {
        large[i] = static_cast<char>(i * 7 + i / 256);
    }
    for (const std::string& content :
         {std::string("VWOV model"), std::string("no model"), std::string("VWOV"), std::string(), large})
    {
        SCOPED_TRACE(content.size());
        const auto length = static_cast<uint32_t>(content.size());
        ScriptedStream stream(content);
        EXPECT_EQ(Get(&stream), S_OK);
        EXPECT_NE(model, nullptr);
        EXPECT_TRUE(Model() == content);
        EXPECT_EQ(logger.Take(), ModelRead(length));
        EXPECT_THAT(stream.calls,
                    ElementsAre("Seek(0, END)", "Seek(0, SET, no position)", "Read(" + std::to_string(length) + ")"));
        EXPECT_TRUE(stream.Content() == content);
    }
}

TEST_F(GetUserModelFromIStream, FailedSeekGivesItsCodeAndLeavesTheOutputsAndItsWordingIsKept)
{
    for (const int n : {1, 2})
    {
        SCOPED_TRACE(n);
        ScriptedStream stream("VWOV model");
        stream.Answer("Seek", n, STG_E_REVERTED);
        EXPECT_EQ(Get(&stream), STG_E_REVERTED);
        EXPECT_TRUE(untouched);
        EXPECT_EQ(size, 4711U);
        EXPECT_EQ(logger.Take(), GetEntry + (n == 1 ? EndNotFound : BeginningNotFound));
        EXPECT_EQ(stream.calls.size(), static_cast<std::size_t>(n));
    }
}

TEST_F(GetUserModelFromIStream, PositiveSeekResultsAreSuccesses)
{
    ScriptedStream stream("VWOV model");
    stream.Answer("Seek", 2, S_FALSE);
    EXPECT_EQ(Get(&stream), S_OK);
    // The seek to the beginning moved nothing, so the read came too late.
    EXPECT_EQ(logger.lines, ModelNotRead("0", 0, 10));
}

TEST_F(GetUserModelFromIStream, TakesTheLow32BitsOfTheLength)
{
    for (const auto& [end, length] :
         {std::pair{uint64_t{0x1'0000'0000}, 0U}, {uint64_t{0x1'0000'0007}, 7U}, {uint64_t{0xFFFF'FFFF'0000'0004}, 4U}})
    {
        SCOPED_TRACE(end);
        ScriptedStream stream("VWOV model");
        stream.reportedEnd = end;
        EXPECT_EQ(Get(&stream), S_OK);
        EXPECT_EQ(Model(), std::string("VWOV model").substr(0, length));
        EXPECT_EQ(logger.Take(), ModelRead(length));
    }
}

TEST_F(GetUserModelFromIStream, ReadGivesItsOwnResultAndTheBlockWithZerosForWhatItDidNotDeliver)
{
    struct Case
    {
        const char* description;
        HRESULT result;
        uint32_t delivered; ///< 0: the read does nothing and reports nothing
        std::optional<uint32_t> claimed;
        Lines lines;
    };
    for (const Case& row : {Case{"short, called a success", S_OK, 6, {}, ModelNotRead("0", 6, 10)},
                            Case{"short, called a positive result", S_FALSE, 6, {}, ModelNotRead("1", 6, 10)},
                            Case{"short, called a failure", STG_E_READFAULT, 6, {}, ModelNotRead("8003001e", 6, 10)},
                            Case{"nothing, called a success", S_OK, 0, {}, ModelNotRead("0", 0, 10)},
                            Case{"nothing, called a failure", E_FAIL, 0, {}, ModelNotRead("80004005", 0, 10)},
                            Case{"a failure that reports every byte", STG_E_READFAULT, 0, 10, ModelNotRead("8003001e", 10, 10)},
                            Case{"every byte with a positive result", S_FALSE, 0, 10, ModelRead(10)},
                            Case{"a success that reports more than there is room for", S_OK, 10, 11, ModelNotRead("0", 11, 10)}})
    {
        SCOPED_TRACE(row.description);
        ScriptedStream stream("VWOV model");
        stream.mostBytes = row.delivered;
        stream.shortResult = row.result;
        stream.claimedCount = row.claimed;
        if (row.delivered == 0)
        {
            stream.Answer("Read", 1, row.result);
        }
        EXPECT_EQ(Get(&stream), row.result);
        EXPECT_EQ(size, 10U);
        if (row.delivered > 0 || !row.claimed) // else the bytes are what the stream says it wrote
        {
            EXPECT_EQ(Model(), std::string("VWOV model").substr(0, row.delivered) + std::string(10 - row.delivered, '\0'));
        }
        EXPECT_EQ(logger.Take(), row.lines);
    }
}

} // namespace GetUserModelFromIStreamTests

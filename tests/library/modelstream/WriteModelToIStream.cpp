#include "library/modelstream/UserModelStream.h"
#include "tests/support/AdapterTest.h"
#include "tests/support/ScriptedStream.h"

#include <gmock/gmock.h>

namespace
{

using testing::ElementsAre;

const LogLine Entry = Log(4, 1, "[WriteModelToIStream] Entry.");
const LogLine Exit = Log(4, 1, "[WriteModelToIStream] Exit.");

LogLine BytesWritten(uint32_t count)
{
    return LogFormat(5, 1, "[WriteModelToIStream] Bytes written: " + std::to_string(count) + ".");
}

LogLine WriteFailed(HRESULT status)
{
    return LogWithStatus(2, 1, "[WriteModelToIStream] Failed to write model to IStream.", status);
}

LogLine Lengths(uint32_t size, uint32_t written)
{
    return LogFormat(5, 1,
                     "[WriteModelToIStream] Expected data length: " + std::to_string(size) +
                         ", actually wrote: " + std::to_string(written) + ".");
}

LogLine CommitFailed(HRESULT status)
{
    return LogWithStatus(2, 1, "[WriteModelToIStream] Failed to commit data to stream.", status);
}

class WriteModelToIStream : public AdapterTest
{
protected:
    HRESULT Write(const std::string& model, IStream* stream)
    {
        // A block of exactly the model's length, so that a read beyond it does not pass unseen.
        const std::vector<uint8_t> data(model.begin(), model.end());
        return ::WriteModelToIStream(stream, data.data(), static_cast<uint32_t>(data.size()), &logger);
    }
};

TEST_F(WriteModelToIStream, ReplacesTheContentAndCommits)
{
    for (const std::string_view former : {"", "short", "a former content that is longer than the model"})
    {
        SCOPED_TRACE(former);
        ScriptedStream stream(former);
        ASSERT_EQ(stream.Seek(LARGE_INTEGER{}, STREAM_SEEK_END, nullptr), S_OK);
        stream.calls.clear();
        EXPECT_EQ(Write("VWOV model", &stream), S_OK);
        EXPECT_EQ(stream.Content(), "VWOV model");
        EXPECT_THAT(stream.calls, ElementsAre("SetSize(10)", "Seek(0, SET, no position)", "Write(10)", "Commit(1)"));
        EXPECT_THAT(logger.Take(), ElementsAre(Entry, BytesWritten(10), Exit));
    }
}

TEST_F(WriteModelToIStream, EmptyModelEmptiesTheStream)
{
    ScriptedStream stream("former");
    EXPECT_EQ(Write("", &stream), S_OK);
    EXPECT_EQ(stream.Content(), "");
    EXPECT_THAT(stream.calls, ElementsAre("SetSize(0)", "Seek(0, SET, no position)", "Write(0)", "Commit(1)"));
    EXPECT_THAT(logger.lines, ElementsAre(Entry, BytesWritten(0), Exit));
}

TEST_F(WriteModelToIStream, TheHighHalfOfTheSizeIsZero)
{
    // A size with its top bit set must not be extended to 64 bits with its sign.
    const uint8_t byte = 0;
    ScriptedStream stream;
    stream.Answer("SetSize", 1, STG_E_MEDIUMFULL);
    EXPECT_EQ(::WriteModelToIStream(&stream, &byte, 0xFFFFFFFF, &logger), STG_E_MEDIUMFULL);
    EXPECT_THAT(stream.calls, ElementsAre("SetSize(4294967295)"));
}

TEST_F(WriteModelToIStream, WrittenModelIsFoundAndReadBack)
{
    ScriptedStream stream("a former content that is longer than the model");
    ASSERT_EQ(Write("VWOV model", &stream), S_OK);
    EXPECT_EQ(::CheckIStreamForUserModel(&stream, &logger), S_OK);

    uint8_t* data = nullptr;
    uint32_t size = 0;
    EXPECT_EQ(::GetUserModelFromIStream(&stream, data, size, &logger), S_OK);
    const std::unique_ptr<const uint8_t[]> model(data);
    EXPECT_EQ(std::string(model.get(), model.get() + size), "VWOV model");
}

TEST_F(WriteModelToIStream, ModelWithoutTheMagicIsWrittenButNotFound)
{
    ScriptedStream stream("VWOV former");
    EXPECT_EQ(Write("model", &stream), S_OK);
    EXPECT_EQ(stream.Content(), "model");
    EXPECT_EQ(::CheckIStreamForUserModel(&stream, &logger), E_FAIL);
}

TEST_F(WriteModelToIStream, FailedSizeChangeLeavesTheContent)
{
    ScriptedStream stream("former");
    stream.Answer("SetSize", 1, STG_E_MEDIUMFULL);
    EXPECT_EQ(Write("VWOV model", &stream), STG_E_MEDIUMFULL);
    EXPECT_EQ(stream.Content(), "former");
    EXPECT_THAT(stream.calls, ElementsAre("SetSize(10)"));
    EXPECT_THAT(
        logger.lines,
        ElementsAre(Entry, LogWithStatus(2, 1, "[WriteModelToIStream] Failed to change stream size.", STG_E_MEDIUMFULL), Exit));
}

TEST_F(WriteModelToIStream, FailedSizeChangeOfAnEmptyModelWritesNoCount)
{
    ScriptedStream stream("former");
    stream.Answer("SetSize", 1, E_NOTIMPL);
    EXPECT_EQ(Write("", &stream), E_NOTIMPL);
    EXPECT_THAT(logger.lines,
                ElementsAre(Entry, LogWithStatus(2, 1, "[WriteModelToIStream] Failed to change stream size.", E_NOTIMPL), Exit));
}

TEST_F(WriteModelToIStream, FailedSeekEndsTheWriteAndItsWordingIsKept)
{
    ScriptedStream stream("former");
    stream.Answer("Seek", 1, E_ACCESSDENIED);
    EXPECT_EQ(Write("VWOV model", &stream), E_ACCESSDENIED);
    EXPECT_THAT(stream.calls, ElementsAre("SetSize(10)", "Seek(0, SET, no position)"));
    EXPECT_THAT(logger.lines,
                ElementsAre(Entry,
                            LogWithStatus(2, 1, "[WriteModelToIStream] Failed to seek to stream begining.", E_ACCESSDENIED),
                            Exit));
}

TEST_F(WriteModelToIStream, FailedWriteIsNeitherCommittedNorReverted)
{
    ScriptedStream stream("former");
    stream.Answer("Write", 1, STG_E_WRITEFAULT);
    EXPECT_EQ(Write("VWOV model", &stream), STG_E_WRITEFAULT);
    EXPECT_THAT(stream.calls, ElementsAre("SetSize(10)", "Seek(0, SET, no position)", "Write(10)"));
    EXPECT_THAT(logger.lines, ElementsAre(Entry, WriteFailed(STG_E_WRITEFAULT), Lengths(10, 0), Exit));
}

TEST_F(WriteModelToIStream, FailedWriteIsAFailureEvenWhenItReportsEveryByte)
{
    ScriptedStream stream("former");
    stream.Answer("Write", 1, STG_E_WRITEFAULT);
    stream.claimedCount = 10;
    EXPECT_EQ(Write("VWOV model", &stream), STG_E_WRITEFAULT);
    EXPECT_THAT(stream.calls, ElementsAre("SetSize(10)", "Seek(0, SET, no position)", "Write(10)"));
    EXPECT_THAT(logger.lines, ElementsAre(Entry, WriteFailed(STG_E_WRITEFAULT), Lengths(10, 10), Exit));
}

TEST_F(WriteModelToIStream, ShortWriteThatClaimsSuccessIsAnUncommittedSuccessKept)
{
    for (const HRESULT claimed : {S_OK, S_FALSE})
    {
        SCOPED_TRACE(claimed);
        ScriptedStream stream("former");
        stream.mostBytes = 6;
        stream.shortResult = claimed;
        EXPECT_EQ(Write("VWOV model", &stream), claimed);
        EXPECT_THAT(stream.calls, ElementsAre("SetSize(10)", "Seek(0, SET, no position)", "Write(10)"));
        EXPECT_THAT(logger.Take(), ElementsAre(Entry, WriteFailed(claimed), Lengths(10, 6), Exit));
    }
}

TEST_F(WriteModelToIStream, ShortWriteThatReportsAFailureGivesItsCode)
{
    ScriptedStream stream("former");
    stream.mostBytes = 6;
    stream.shortResult = STG_E_MEDIUMFULL;
    EXPECT_EQ(Write("VWOV model", &stream), STG_E_MEDIUMFULL);
    EXPECT_THAT(stream.calls, ElementsAre("SetSize(10)", "Seek(0, SET, no position)", "Write(10)"));
    EXPECT_THAT(logger.lines, ElementsAre(Entry, WriteFailed(STG_E_MEDIUMFULL), Lengths(10, 6), Exit));
}

TEST_F(WriteModelToIStream, WriteThatReportsNothingCountsAsNoBytes)
{
    ScriptedStream stream("former");
    stream.Answer("Write", 1, S_OK);
    EXPECT_EQ(Write("VWOV model", &stream), S_OK);
    EXPECT_THAT(logger.lines, ElementsAre(Entry, WriteFailed(S_OK), Lengths(10, 0), Exit));
}

TEST_F(WriteModelToIStream, WriteThatReportsMoreThanItsBytesIsNotCommitted)
{
    ScriptedStream stream("former");
    stream.claimedCount = 11;
    EXPECT_EQ(Write("VWOV model", &stream), S_OK);
    EXPECT_THAT(stream.calls, ElementsAre("SetSize(10)", "Seek(0, SET, no position)", "Write(10)"));
    EXPECT_THAT(logger.lines, ElementsAre(Entry, WriteFailed(S_OK), Lengths(10, 11), Exit));
}

TEST_F(WriteModelToIStream, PositiveResultsOfSizeChangeSeekAndWriteAreSuccesses)
{
    ScriptedStream stream;
    stream.Answer("SetSize", 1, S_FALSE);
    stream.Answer("Seek", 1, S_FALSE);
    stream.Answer("Write", 1, S_FALSE);
    stream.claimedCount = 10;
    EXPECT_EQ(Write("VWOV model", &stream), S_OK);
    EXPECT_THAT(stream.calls, ElementsAre("SetSize(10)", "Seek(0, SET, no position)", "Write(10)", "Commit(1)"));
    EXPECT_THAT(logger.lines, ElementsAre(Entry, BytesWritten(10), Exit));
}

TEST_F(WriteModelToIStream, GivesThePositiveResultOfTheCommit)
{
    ScriptedStream stream;
    stream.Answer("Commit", 1, STG_S_CONVERTED);
    EXPECT_EQ(Write("VWOV model", &stream), STG_S_CONVERTED);
    EXPECT_THAT(stream.calls, ElementsAre("SetSize(10)", "Seek(0, SET, no position)", "Write(10)", "Commit(1)"));
    EXPECT_THAT(logger.lines, ElementsAre(Entry, BytesWritten(10), Exit));
}

TEST_F(WriteModelToIStream, FailedCommitThatIsRevertedIsASuccessKept)
{
    for (const HRESULT reverted : {S_OK, S_FALSE})
    {
        SCOPED_TRACE(reverted);
        ScriptedStream stream;
        stream.Answer("Commit", 1, STG_E_MEDIUMFULL);
        stream.Answer("Revert", 1, reverted);
        EXPECT_EQ(Write("VWOV model", &stream), reverted);
        EXPECT_THAT(stream.calls, ElementsAre("SetSize(10)", "Seek(0, SET, no position)", "Write(10)", "Commit(1)", "Revert()"));
        EXPECT_THAT(logger.Take(), ElementsAre(Entry, CommitFailed(STG_E_MEDIUMFULL), BytesWritten(10), Exit));
    }
}

TEST_F(WriteModelToIStream, FailedRevertGivesItsOwnCode)
{
    ScriptedStream stream;
    stream.Answer("Commit", 1, STG_E_MEDIUMFULL);
    stream.Answer("Revert", 1, STG_E_REVERTED);
    EXPECT_EQ(Write("VWOV model", &stream), STG_E_REVERTED);
    EXPECT_THAT(stream.calls, ElementsAre("SetSize(10)", "Seek(0, SET, no position)", "Write(10)", "Commit(1)", "Revert()"));
    EXPECT_THAT(logger.lines,
                ElementsAre(Entry, CommitFailed(STG_E_MEDIUMFULL),
                            LogWithStatus(2, 1, "[WriteModelToIStream] Failed to revert IStream changes.", STG_E_REVERTED),
                            Exit));
}

} // namespace

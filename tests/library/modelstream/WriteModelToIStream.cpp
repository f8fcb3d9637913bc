#include "tests/library/modelstream/StreamTest.h"
#include "tests/support/ScriptedStream.h"
#include "tests/support/Table.h"

#include <gmock/gmock.h>

#include <optional>

namespace WriteModelToIStreamTests
{

using namespace StreamLines;
using testing::ElementsAre;

using Answers = std::vector<std::pair<const char*, HRESULT>>;

/// A write of ten bytes into a stream that answers so.
struct Trouble
{
    const char* description;
    Answers answers; ///< to the first call of each of these operations
    std::optional<uint32_t> mostBytes;
    HRESULT shortResult;
    std::optional<uint32_t> claimedCount;
    HRESULT result;
    std::size_t calls; ///< of the sequence of all five
    Lines between;     ///< entry and exit
};

class WriteModelToIStream : public StreamTest, public testing::WithParamInterface<Trouble>
{
};

TEST_F(WriteModelToIStream, ReplacesTheContentAndCommits)
{
    for (const std::string_view former : {"", "short", "a former content that is longer than the model"})
    {
        for (const std::string& content : {std::string("VWOV model"), std::string()})
        {
            SCOPED_TRACE(testing::Message() << content << " over " << former);
            ScriptedStream stream(former);
            ASSERT_EQ(stream.Seek(LARGE_INTEGER{}, STREAM_SEEK_END, nullptr), S_OK);
            stream.calls.clear();
            EXPECT_EQ(Write(content, &stream), S_OK);
            EXPECT_EQ(stream.Content(), content);
            const std::string length = std::to_string(content.size());
            EXPECT_THAT(stream.calls, ElementsAre("SetSize(" + length + ")", "Seek(0, SET, no position)", "Write(" + length + ")",
                                                  "Commit(1)"));
            EXPECT_EQ(logger.Take(), ModelWritten(static_cast<uint32_t>(content.size())));
        }
    }
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

TEST_F(WriteModelToIStream, WrittenModelIsReadBackAndFoundByItsMagic)
{
    for (const std::string content : {"VWOV model", "model"})
    {
        SCOPED_TRACE(content);
        ScriptedStream stream("VWOV, and a former content that is longer than the model");
        ASSERT_EQ(Write(content, &stream), S_OK);
        EXPECT_EQ(Check(&stream), content == "model" ? E_FAIL : S_OK);
        EXPECT_EQ(Get(&stream), S_OK);
        EXPECT_EQ(Model(), content);
    }
}

TEST_F(WriteModelToIStream, FailedSizeChangeLeavesTheContentAndWritesNoCount)
{
    for (const char* content : {"VWOV model", ""})
    {
        SCOPED_TRACE(content);
        ScriptedStream stream("former");
        stream.Answer("SetSize", 1, E_NOTIMPL);
        EXPECT_EQ(Write(content, &stream), E_NOTIMPL);
        EXPECT_EQ(stream.Content(), "former");
        EXPECT_EQ(logger.Take(), WriteEntry + NotDone("change stream size", E_NOTIMPL) + WriteExit);
    }
}

TEST_P(WriteModelToIStream, TroubleHasItsResultCallsAndLines)
{
    const Trouble& trouble = GetParam();
    ScriptedStream stream("former");
    for (const auto& [operation, result] : trouble.answers)
    {
        stream.Answer(operation, 1, result);
    }
    stream.mostBytes = trouble.mostBytes.value_or(stream.mostBytes);
    stream.shortResult = trouble.shortResult;
    stream.claimedCount = trouble.claimedCount;
    EXPECT_EQ(Write("VWOV model", &stream), trouble.result);
    std::vector<std::string> calls{"SetSize(10)", "Seek(0, SET, no position)", "Write(10)", "Commit(1)", "Revert()"};
    calls.resize(trouble.calls);
    EXPECT_EQ(stream.calls, calls);
    EXPECT_EQ(logger.lines, WriteEntry + trouble.between + WriteExit);
}

/// A write that is no plain success of all ten bytes.
Lines NotWritten(HRESULT status, uint32_t written)
{
    return NotDone("write model to IStream", status) +
           LogFormat(5, 1, "[WriteModelToIStream] Expected data length: 10, actually wrote: " + std::to_string(written) + ".");
}

constexpr std::nullopt_t All = std::nullopt;
const Answers None;
const Lines Full = NotDone("commit data to stream", STG_E_MEDIUMFULL);

Answers Answering(const char* operation, HRESULT result, Answers others = {})
{
    others.emplace_back(operation, result);
    return others;
}

INSTANTIATE_TEST_SUITE_P(
    Troubles, WriteModelToIStream,
    testing::Values(Trouble{"size change fails", Answering("SetSize", STG_E_MEDIUMFULL), All, S_OK, All, STG_E_MEDIUMFULL, 1,
                            NotDone("change stream size", STG_E_MEDIUMFULL)},
                    Trouble{"seek fails with its wording kept", Answering("Seek", E_ACCESSDENIED), All, S_OK, All, E_ACCESSDENIED,
                            2, NotDone("seek to stream begining", E_ACCESSDENIED)},
                    Trouble{"write fails", Answering("Write", STG_E_WRITEFAULT), All, S_OK, All, STG_E_WRITEFAULT, 3,
                            NotWritten(STG_E_WRITEFAULT, 0)},
                    Trouble{"failed write reports every byte", Answering("Write", STG_E_WRITEFAULT), All, S_OK, 10,
                            STG_E_WRITEFAULT, 3, NotWritten(STG_E_WRITEFAULT, 10)},
                    Trouble{"short write is a success kept", None, 6, S_OK, All, S_OK, 3, NotWritten(S_OK, 6)},
                    Trouble{"short write is a positive success kept", None, 6, S_FALSE, All, S_FALSE, 3, NotWritten(S_FALSE, 6)},
                    Trouble{"short write fails", None, 6, STG_E_MEDIUMFULL, All, STG_E_MEDIUMFULL, 3,
                            NotWritten(STG_E_MEDIUMFULL, 6)},
                    Trouble{"write reports nothing", Answering("Write", S_OK), All, S_OK, All, S_OK, 3, NotWritten(S_OK, 0)},
                    Trouble{"write reports more than its bytes", None, All, S_OK, 11, S_OK, 3, NotWritten(S_OK, 11)},
                    Trouble{"positive results are successes",
                            Answering("SetSize", S_FALSE, Answering("Seek", S_FALSE, Answering("Write", S_FALSE))), All, S_OK, 10,
                            S_OK, 4, BytesWritten(10)},
                    Trouble{"commit has a positive result", Answering("Commit", STG_S_CONVERTED), All, S_OK, All, STG_S_CONVERTED,
                            4, BytesWritten(10)},
                    Trouble{"failed commit is reverted, a success kept", Answering("Commit", STG_E_MEDIUMFULL), All, S_OK, All,
                            S_OK, 5, Full + BytesWritten(10)},
                    Trouble{"failed commit is reverted positively, a success kept",
                            Answering("Commit", STG_E_MEDIUMFULL, Answering("Revert", S_FALSE)), All, S_OK, All, S_FALSE, 5,
                            Full + BytesWritten(10)},
                    Trouble{"revert fails", Answering("Commit", STG_E_MEDIUMFULL, Answering("Revert", STG_E_REVERTED)), All, S_OK,
                            All, STG_E_REVERTED, 5, Full + NotDone("revert IStream changes", STG_E_REVERTED)}),
    RowName());

} // namespace WriteModelToIStreamTests

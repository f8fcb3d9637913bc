#include "tests/library/modelstream/StreamTest.h"
#include "tests/support/ScriptedStream.h"

#include <gmock/gmock.h>

namespace CheckIStreamForUserModelTests
{

using namespace StreamLines;
using namespace std::string_view_literals;
using testing::ElementsAre;

using CheckIStreamForUserModel = StreamTest;

TEST_F(CheckIStreamForUserModel, ModelIsFoundByItsFirstFourBytes)
{
    struct Case
    {
        bool model;
        std::vector<std::string_view> contents;
    };
    for (const Case& row :
         {Case{true, {"VWOV"sv, "VWOV\0"sv, "VWOVx"sv, "VWOV and the rest of the model"sv}},
          Case{false, {""sv, "V"sv, "VW"sv, "VWO"sv, "vwov1"sv, " VWOV"sv, "VWO\0V"sv, "VOWV1"sv, "\0\0\0\0\0"sv}}})
    {
        for (const std::string_view content : row.contents)
        {
            SCOPED_TRACE(content);
            ScriptedStream stream(content);
            EXPECT_EQ(Check(&stream), row.model ? S_OK : E_FAIL);
            EXPECT_EQ(logger.Take(), row.model ? ModelFound : NoModelFound);
            EXPECT_THAT(stream.calls, ElementsAre("Seek(0, SET, no position)", "Read(5)"));
        }
    }
}

TEST_F(CheckIStreamForUserModel, EveryBitOfTheMagicCounts)
{
    for (unsigned int bit = 0; bit < 32; ++bit)
    {
        SCOPED_TRACE(bit);
        std::string content = "VWOV and the rest";
        content[bit / 8] = static_cast<char>(content[bit / 8] ^ (1 << bit % 8));
        ScriptedStream stream(content);
        EXPECT_EQ(Check(&stream), E_FAIL);
        EXPECT_EQ(logger.Take(), NoModelFound);
    }
}

/// Keeps what the buffer of the last Read held beforehand.
class BufferPeekingStream : public ScriptedStream
{
public:
    STDMETHODIMP Read(void* target, ULONG size, ULONG* count) override
    {
        before.assign(static_cast<const char*>(target), size);
        return ScriptedStream::Read(target, size, count);
    }

    std::string before;
};

TEST_F(CheckIStreamForUserModel, BufferIsZeroBeforeTheReadSoThatNoFormerMagicIsLeftInIt)
{
    BufferPeekingStream stream;
    EXPECT_EQ(Check(&stream), E_FAIL);
    EXPECT_EQ(stream.before, std::string(5, '\0'));
}

TEST_F(CheckIStreamForUserModel, ShortReadGivesItsOwnResultWhenItDeliversTheWholeMagic)
{
    for (const HRESULT result : {S_OK, S_FALSE})
    {
        for (uint32_t delivered = 0; delivered <= 4; ++delivered)
        {
            SCOPED_TRACE(delivered);
            ScriptedStream stream("VWOV1");
            stream.mostBytes = delivered;
            stream.shortResult = result;
            EXPECT_EQ(Check(&stream), delivered < 4 ? E_FAIL : result);
            EXPECT_EQ(logger.Take(), delivered < 4 ? NoModelFound : ModelFound);
        }
    }
}

TEST_F(CheckIStreamForUserModel, LooksAtTheBeginningAndStaysBehindTheBytesRead)
{
    ScriptedStream stream("VWOV and the rest");
    ULARGE_INTEGER position{};
    ASSERT_EQ(stream.Seek(LARGE_INTEGER{}, STREAM_SEEK_END, nullptr), S_OK);
    EXPECT_EQ(Check(&stream), S_OK);
    ASSERT_EQ(stream.Seek(LARGE_INTEGER{}, STREAM_SEEK_CUR, &position), S_OK);
    EXPECT_EQ(position.QuadPart, 5U);
    EXPECT_EQ(stream.Content(), "VWOV and the rest");
}

TEST_F(CheckIStreamForUserModel, FailureGivesItsCodeAndNoExitLine)
{
    for (const HRESULT failure : {E_FAIL, E_ACCESSDENIED, STG_E_REVERTED})
    {
        SCOPED_TRACE(failure);
        ScriptedStream lost("VWOV1");
        lost.Answer("Seek", 1, failure);
        EXPECT_EQ(Check(&lost), failure);
        EXPECT_EQ(logger.Take(), CheckSeekFailed(failure));
        EXPECT_THAT(lost.calls, ElementsAre("Seek(0, SET, no position)"));

        for (const uint32_t delivered : {0U, 4U})
        {
            SCOPED_TRACE(delivered);
            ScriptedStream unreadable("VWOV1");
            unreadable.mostBytes = delivered;
            unreadable.shortResult = failure;
            EXPECT_EQ(Check(&unreadable), failure);
            EXPECT_EQ(logger.Take(), CheckReadFailed(failure));
        }
    }
}

TEST_F(CheckIStreamForUserModel, PositiveSeekResultIsASuccess)
{
    ScriptedStream stream("VWOV1");
    stream.Answer("Seek", 1, S_FALSE);
    EXPECT_EQ(Check(&stream), S_OK);
    EXPECT_EQ(logger.lines, ModelFound);
}

} // namespace CheckIStreamForUserModelTests

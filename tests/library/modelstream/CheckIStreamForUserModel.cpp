#include "library/modelstream/UserModelStream.h"
#include "tests/support/AdapterTest.h"
#include "tests/support/ScriptedStream.h"

#include <gmock/gmock.h>

namespace
{

using testing::ElementsAre;

const LogLine Entry = Log(4, 1, "[CheckIStreamForUserModel] Entry.");
const LogLine NoModel = Log(5, 1, "[CheckIStreamForUserModel] There is no user model data in IStream.");
const LogLine Exit = Log(4, 1, "[CheckIStreamForUserModel] Exit.");

class CheckIStreamForUserModel : public AdapterTest
{
protected:
    HRESULT Check(IStream* stream)
    {
        return ::CheckIStreamForUserModel(stream, &logger);
    }
};

TEST_F(CheckIStreamForUserModel, ModelIsFoundByItsFirstFourBytes)
{
    using namespace std::string_view_literals;
    for (const std::string_view content : {"VWOV"sv, "VWOV\0"sv, "VWOVx"sv, "VWOV and the rest of the model"sv})
    {
        SCOPED_TRACE(content);
        ScriptedStream stream(content);
        EXPECT_EQ(Check(&stream), S_OK);
        EXPECT_THAT(logger.Take(), ElementsAre(Entry, Exit));
        EXPECT_THAT(stream.calls, ElementsAre("Seek(0, SET, no position)", "Read(5)"));
    }
}

TEST_F(CheckIStreamForUserModel, OtherContentIsNoModel)
{
    using namespace std::string_view_literals;
    for (const std::string_view content :
         {""sv, "V"sv, "VW"sv, "VWO"sv, "vwov1"sv, " VWOV"sv, "VWO\0V"sv, "VOWV1"sv, "\0\0\0\0\0"sv})
    {
        SCOPED_TRACE(content);
        ScriptedStream stream(content);
        EXPECT_EQ(Check(&stream), E_FAIL);
        EXPECT_THAT(logger.Take(), ElementsAre(Entry, NoModel, Exit));
        EXPECT_THAT(stream.calls, ElementsAre("Seek(0, SET, no position)", "Read(5)"));
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
        EXPECT_THAT(logger.Take(), ElementsAre(Entry, NoModel, Exit));
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

TEST_F(CheckIStreamForUserModel, BytesThatTheReadDoesNotDeliverDoNotMatch)
{
    for (uint32_t delivered = 0; delivered < 4; ++delivered)
    {
        SCOPED_TRACE(delivered);
        ScriptedStream stream("VWOV1");
        stream.mostBytes = delivered;
        EXPECT_EQ(Check(&stream), E_FAIL);
        EXPECT_THAT(logger.Take(), ElementsAre(Entry, NoModel, Exit));
    }
}

TEST_F(CheckIStreamForUserModel, ShortReadOfTheWholeMagicGivesTheReadsOwnResult)
{
    for (const HRESULT shortResult : {S_OK, S_FALSE})
    {
        SCOPED_TRACE(shortResult);
        ScriptedStream stream("VWOV");
        stream.shortResult = shortResult;
        EXPECT_EQ(Check(&stream), shortResult);
        EXPECT_THAT(logger.Take(), ElementsAre(Entry, Exit));
    }
}

TEST_F(CheckIStreamForUserModel, PositiveReadResultWithoutTheMagicIsStillAFailure)
{
    ScriptedStream stream("VWO");
    stream.shortResult = S_FALSE;
    EXPECT_EQ(Check(&stream), E_FAIL);
    EXPECT_THAT(logger.lines, ElementsAre(Entry, NoModel, Exit));
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

TEST_F(CheckIStreamForUserModel, FailedSeekGivesItsCodeAndNoExitLine)
{
    for (const HRESULT failure : {E_FAIL, E_ACCESSDENIED, STG_E_REVERTED})
    {
        SCOPED_TRACE(failure);
        ScriptedStream stream("VWOV1");
        stream.Answer("Seek", 1, failure);
        EXPECT_EQ(Check(&stream), failure);
        EXPECT_THAT(logger.Take(),
                    ElementsAre(Entry, LogWithStatus(
                                           2, 1, "[CheckIStreamForUserModel] Failed to set pointer to the beginning of IStream.",
                                           failure)));
        EXPECT_THAT(stream.calls, ElementsAre("Seek(0, SET, no position)"));
    }
}

TEST_F(CheckIStreamForUserModel, PositiveSeekResultIsASuccess)
{
    ScriptedStream stream("VWOV1");
    stream.Answer("Seek", 1, S_FALSE);
    EXPECT_EQ(Check(&stream), S_OK);
    EXPECT_THAT(logger.lines, ElementsAre(Entry, Exit));
}

TEST_F(CheckIStreamForUserModel, FailedReadGivesItsCodeAndNoExitLine)
{
    for (const HRESULT failure : {E_FAIL, STG_E_ACCESSDENIED})
    {
        SCOPED_TRACE(failure);
        ScriptedStream stream("VWOV1");
        stream.Answer("Read", 1, failure);
        EXPECT_EQ(Check(&stream), failure);
        EXPECT_THAT(logger.Take(),
                    ElementsAre(Entry, LogWithStatus(2, 1, "[CheckIStreamForUserModel] Failed to read from IStream.", failure)));
        EXPECT_THAT(stream.calls, ElementsAre("Seek(0, SET, no position)", "Read(5)"));
    }
}

TEST_F(CheckIStreamForUserModel, FailedReadIsAFailureEvenWhenItDeliveredTheMagic)
{
    ScriptedStream stream("VWOV1");
    stream.mostBytes = 4;
    stream.shortResult = STG_E_READFAULT;
    EXPECT_EQ(Check(&stream), STG_E_READFAULT);
    EXPECT_THAT(logger.lines, ElementsAre(Entry, LogWithStatus(2, 1, "[CheckIStreamForUserModel] Failed to read from IStream.",
                                                               STG_E_READFAULT)));
}

} // namespace

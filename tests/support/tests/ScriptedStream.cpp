#include "tests/support/ScriptedStream.h"

#include "tests/support/FaultInjector.h"

#include <gmock/gmock.h>

#include <array>

namespace ScriptedStreamTests
{

using testing::ElementsAre;

LARGE_INTEGER Move(LONGLONG distance)
{
    LARGE_INTEGER move;
    move.QuadPart = distance;
    return move;
}

ULARGE_INTEGER Size(ULONGLONG bytes)
{
    ULARGE_INTEGER size;
    size.QuadPart = bytes;
    return size;
}

std::string Read(ScriptedStream& stream, ULONG size, HRESULT expected = S_OK)
{
    std::string bytes(size, '?');
    ULONG count = 4711;
    EXPECT_EQ(stream.Read(bytes.data(), size, &count), expected);
    EXPECT_LE(count, size);
    return bytes.substr(0, count);
}

TEST(ScriptedStream, ReadsOnFromWhereItStands)
{
    ScriptedStream stream("abcdef");
    EXPECT_EQ(Read(stream, 2), "ab");
    EXPECT_EQ(Read(stream, 3), "cde");
    EXPECT_EQ(Read(stream, 3), "f");
    EXPECT_EQ(Read(stream, 1), "");
}

TEST(ScriptedStream, WritesOverItsContentAndGrows)
{
    ScriptedStream stream("abcdef");
    ULONG count = 0;
    EXPECT_EQ(stream.Seek(Move(4), STREAM_SEEK_SET, nullptr), S_OK);
    EXPECT_EQ(stream.Write("WXYZ", 4, &count), S_OK);
    EXPECT_EQ(count, 4U);
    EXPECT_EQ(stream.Write("!", 1, nullptr), S_OK);
    EXPECT_EQ(stream.Content(), "abcdWXYZ!");
}

TEST(ScriptedStream, SeeksFromEachOrigin)
{
    ScriptedStream stream("abcdef");
    ULARGE_INTEGER position = Size(0);
    EXPECT_EQ(stream.Seek(Move(-1), STREAM_SEEK_END, &position), S_OK);
    EXPECT_EQ(position.QuadPart, 5U);
    EXPECT_EQ(stream.Seek(Move(-2), STREAM_SEEK_CUR, &position), S_OK);
    EXPECT_EQ(position.QuadPart, 3U);
    EXPECT_EQ(stream.Seek(Move(1), STREAM_SEEK_SET, &position), S_OK);
    EXPECT_EQ(position.QuadPart, 1U);
    EXPECT_EQ(Read(stream, 1), "b");
}

TEST(ScriptedStream, SetSizeCutsAndFillsWithZeros)
{
    ScriptedStream stream("abc");
    EXPECT_EQ(stream.SetSize(Size(1)), S_OK);
    EXPECT_EQ(stream.SetSize(Size(3)), S_OK);
    EXPECT_EQ(stream.Content(), std::string("a\0\0", 3));
}

TEST(ScriptedStream, KeepsItsCallsInOrder)
{
    ScriptedStream stream("abc");
    std::array<char, 2> bytes{};
    stream.Seek(Move(0), STREAM_SEEK_END, nullptr);
    ULARGE_INTEGER position;
    stream.Seek(Move(-3), STREAM_SEEK_CUR, &position);
    stream.Seek(Move(1), STREAM_SEEK_SET, &position);
    stream.Read(bytes.data(), 2, nullptr);
    stream.Write("x", 1, nullptr);
    stream.SetSize(Size(12));
    stream.Commit(STGC_DEFAULT);
    stream.Revert();
    EXPECT_THAT(stream.calls, ElementsAre("Seek(0, END, no position)", "Seek(-3, CUR)", "Seek(1, SET)", "Read(2)", "Write(1)",
                                          "SetSize(12)", "Commit(0)", "Revert()"));
}

TEST(ScriptedStream, AnswersTheNthCallOfAnOperationAndDoesNothing)
{
    ScriptedStream stream("abc");
    stream.Answer("Read", 2, STG_E_REVERTED);
    stream.Answer("Commit", 1, S_FALSE);
    EXPECT_EQ(Read(stream, 1), "a");
    std::array<char, 2> bytes{'?', '?'};
    EXPECT_EQ(stream.Read(bytes.data(), 1, nullptr), STG_E_REVERTED);
    EXPECT_EQ(bytes[0], '?');
    EXPECT_EQ(Read(stream, 1), "b");
    EXPECT_EQ(stream.Commit(STGC_DEFAULT), S_FALSE);
    EXPECT_EQ(stream.Commit(STGC_DEFAULT), S_OK);
}

TEST(ScriptedStream, MovesAtMostTheAllowedBytes)
{
    ScriptedStream stream("abcdef");
    stream.mostBytes = 2;
    EXPECT_EQ(Read(stream, 4), "ab");
    stream.shortResult = S_FALSE;
    EXPECT_EQ(Read(stream, 4, S_FALSE), "cd");
    EXPECT_EQ(Read(stream, 2), "ef");
    ULONG count = 0;
    EXPECT_EQ(stream.Write("wxyz", 4, &count), S_FALSE);
    EXPECT_EQ(count, 2U);
    EXPECT_EQ(stream.Content(), "abcdefwx");
}

TEST(ScriptedStream, ReportsAnotherCountWhenTold)
{
    ScriptedStream stream("abc");
    stream.claimedCount = 9;
    stream.Answer("Write", 2, S_FALSE);
    std::array<char, 2> bytes{};
    ULONG count = 0;
    EXPECT_EQ(stream.Read(bytes.data(), 2, &count), S_OK);
    EXPECT_EQ(count, 9U);
    EXPECT_EQ(bytes[1], 'b');
    EXPECT_EQ(stream.Read(bytes.data(), 1, nullptr), S_OK);
    count = 0;
    EXPECT_EQ(stream.Write("x", 1, &count), S_OK);
    EXPECT_EQ(count, 9U);
    count = 0;
    EXPECT_EQ(stream.Write("y", 1, &count), S_FALSE);
    EXPECT_EQ(count, 9U);
    EXPECT_EQ(stream.Content(), "abcx");
}

TEST(ScriptedStream, ReportsAnotherEndWhenTold)
{
    ScriptedStream stream("abc");
    stream.reportedEnd = 1ULL << 32;
    ULARGE_INTEGER position = Size(0);
    EXPECT_EQ(stream.Seek(Move(0), STREAM_SEEK_END, &position), S_OK);
    EXPECT_EQ(position.QuadPart, 1ULL << 32);
    EXPECT_EQ(stream.Seek(Move(0), STREAM_SEEK_CUR, &position), S_OK);
    EXPECT_EQ(position.QuadPart, 3U);
}

TEST(ScriptedStream, FailsAsThePlanSays)
{
    ScriptedStream stream("abc");
    const FaultPlan plan = FaultPlan::Nth(2, FallibleCall::Stream);
    EXPECT_EQ(stream.Commit(STGC_DEFAULT), S_OK);
    EXPECT_EQ(stream.SetSize(Size(0)), STG_E_MEDIUMFULL);
    EXPECT_EQ(stream.Revert(), S_OK);
    EXPECT_EQ(stream.Content(), "abc");
    EXPECT_EQ(plan.Calls(), 3U);
}

TEST(ScriptedStream, OwnWorkOfACallIsNoFallibleCall)
{
    ScriptedStream stream;
    char bytes[] = "a text that is too long for the string object itself";
    ULONG count = 0;
    ULARGE_INTEGER position{};
    const FaultPlan plan = FaultPlan::Count();
    stream.SetSize(Size(1000));
    stream.Seek(Move(100), STREAM_SEEK_SET, nullptr);
    stream.Write(bytes, sizeof(bytes), &count);
    stream.Seek(Move(-100), STREAM_SEEK_END, &position);
    stream.Read(bytes, sizeof(bytes), &count);
    stream.Commit(STGC_DEFAULT);
    stream.Revert();
    EXPECT_EQ(plan.Calls(), 7U);
}

} // namespace ScriptedStreamTests

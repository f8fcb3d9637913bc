#include "tests/support/ScriptedRecording.h"

#include "tests/support/FaultInjector.h"

#include <gmock/gmock.h>

#include <cstring>
#include <stdexcept>

namespace ScriptedRecordingTests
{

using testing::ElementsAre;

const std::vector<float> Samples = {0.5F, -1.0F, 0.25F};

std::vector<float> Read(const BYTE* bytes, DWORD length)
{
    std::vector<float> samples(length / sizeof(float));
    std::memcpy(samples.data(), bytes, length);
    return samples;
}

TEST(ScriptedRecording, LockGivesTheSamplesAndUnlockEndsIt)
{
    ScriptedRecording recording(Samples);
    BYTE* bytes = nullptr;
    DWORD maxLength = 0;
    DWORD length = 0;
    EXPECT_EQ(recording.Lock(&bytes, &maxLength, &length), S_OK);
    EXPECT_EQ(length, 12U);
    EXPECT_EQ(maxLength, 12U);
    EXPECT_EQ(Read(bytes, length), Samples);
    EXPECT_EQ(recording.OpenLocks(), 1);

    EXPECT_EQ(recording.Unlock(), S_OK);
    EXPECT_EQ(recording.locks, 1);
    EXPECT_EQ(recording.unlocks, 1);
    EXPECT_EQ(recording.OpenLocks(), 0);
    EXPECT_FALSE(recording.unlockedWithoutLock);
}

TEST(ScriptedRecording, LengthsThatNobodyAsksForAreLeftOut)
{
    ScriptedRecording recording(Samples);
    BYTE* bytes = nullptr;
    EXPECT_EQ(recording.Lock(&bytes, nullptr, nullptr), S_OK);
    EXPECT_NE(bytes, nullptr);
    EXPECT_EQ(recording.Unlock(), S_OK);
}

TEST(ScriptedRecording, MayHaveAnyNumberOfBytes)
{
    for (const std::size_t size : {0U, 1U, 4U, 7U})
    {
        SCOPED_TRACE(size);
        ScriptedRecording recording(std::vector<uint8_t>(size, 0xAB));
        BYTE* bytes = nullptr;
        DWORD length = 4711;
        EXPECT_EQ(recording.Lock(&bytes, nullptr, &length), S_OK);
        EXPECT_EQ(length, size);
        EXPECT_EQ(std::vector<uint8_t>(bytes, bytes + length), std::vector<uint8_t>(size, 0xAB));
        EXPECT_EQ(recording.GetCurrentLength(&length), S_OK);
        EXPECT_EQ(length, size);
        EXPECT_EQ(recording.Unlock(), S_OK);
    }
}

TEST(ScriptedRecording, LockThatIsToFailLeavesItUnlockedAndTheResultsAlone)
{
    ScriptedRecording recording(Samples);
    recording.lockResult = E_ACCESSDENIED;
    BYTE* bytes = nullptr;
    DWORD length = 4711;
    EXPECT_EQ(recording.Lock(&bytes, nullptr, &length), E_ACCESSDENIED);
    EXPECT_EQ(bytes, nullptr);
    EXPECT_EQ(length, 4711U);
    EXPECT_EQ(recording.locks, 0);
}

TEST(ScriptedRecording, UnlockThatIsToFailUnlocksAllTheSame)
{
    ScriptedRecording recording(Samples);
    recording.unlockResult = E_ACCESSDENIED;
    BYTE* bytes = nullptr;
    EXPECT_EQ(recording.Lock(&bytes, nullptr, nullptr), S_OK);
    EXPECT_EQ(recording.Unlock(), E_ACCESSDENIED);
    EXPECT_EQ(recording.OpenLocks(), 0);
}

TEST(ScriptedRecording, UnlockWithoutLockIsNoticed)
{
    ScriptedRecording recording(Samples);
    EXPECT_EQ(recording.Unlock(), E_UNEXPECTED);
    EXPECT_TRUE(recording.unlockedWithoutLock);
    EXPECT_EQ(recording.unlocks, 0);
}

TEST(ScriptedRecording, CallsMayBeWatchedAndMayThrow)
{
    ScriptedRecording recording(Samples);
    std::vector<std::string> calls;
    recording.onCall = [&](const std::string& call) {
        calls.push_back(call);
        if (calls.size() == 3)
        {
            throw std::runtime_error(call);
        }
    };
    BYTE* bytes = nullptr;
    EXPECT_EQ(recording.Lock(&bytes, nullptr, nullptr), S_OK);
    EXPECT_EQ(recording.Unlock(), S_OK);
    EXPECT_THROW(recording.Lock(&bytes, nullptr, nullptr), std::runtime_error);
    EXPECT_THAT(calls, ElementsAre("Lock", "Unlock", "Lock"));
    EXPECT_EQ(recording.OpenLocks(), 0);
}

TEST(ScriptedRecording, LockAndUnlockAreFallibleCalls)
{
    ScriptedRecording recording(Samples);
    BYTE* bytes = nullptr;
    {
        const FaultPlan plan = FaultPlan::Nth(1, FallibleCall::Buffer);
        EXPECT_EQ(recording.Lock(&bytes, nullptr, nullptr), E_OUTOFMEMORY);
    }
    EXPECT_EQ(recording.OpenLocks(), 0);
    {
        const FaultPlan plan = FaultPlan::Nth(2, FallibleCall::Buffer);
        EXPECT_EQ(recording.Lock(&bytes, nullptr, nullptr), S_OK);
        EXPECT_EQ(recording.Unlock(), E_OUTOFMEMORY);
        EXPECT_EQ(plan.Calls(), 2U);
    }
    EXPECT_EQ(recording.OpenLocks(), 0);
}

} // namespace ScriptedRecordingTests

#include "library/wovwrapper/VeloxWovSDK.h"
#include "tests/library/wovwrapper/Lines.h"
#include "tests/support/AllocationCounter.h"
#include "tests/support/FaultInjector.h"
#include "tests/support/WrapperTest.h"

#include <gmock/gmock.h>

#include <functional>
#include <new>

namespace FeedRecordingFaultsTests
{

using testing::Contains;

class FeedRecordingFaults : public SessionTest
{
protected:
    uint32_t Feed(ScriptedRecording& recording)
    {
        detected = false;
        return wrapper.FeedRecording(session, &recording, 0, true, &detected);
    }

    /// Feeds a recording again and again, each time with the next of its allocations failing, until none does. The exception
    /// passes, the recording is unlocked, and the session is left to the caller.
    /// @return how many allocations failed
    uint64_t ExpectFailedAllocationsToPass(const std::vector<float>& scores, const std::function<void()>& failed)
    {
        ScriptedRecording recording(std::vector<float>(300));
        for (uint64_t faults = 0;; ++faults)
        {
            SCOPED_TRACE(faults);
            Open();
            engine.laterStep.scores = scores;
            try
            {
                const FaultPlan plan = FaultPlan::Nth(faults + 1, FallibleCall::Allocation);
                EXPECT_EQ(Feed(recording), EngineStatus::Success);
                return faults;
            }
            catch (const std::bad_alloc&)
            {
                failed();
            }
            EXPECT_EQ(recording.OpenLocks(), 0);
            EXPECT_EQ(engine.Destroys(session), 0);
        }
    }

    bool detected = false;
};

TEST_F(FeedRecordingFaults, LockThatFailsForWantOfMemoryIsReported)
{
    ScriptedRecording recording(std::vector<float>(100));
    const FaultPlan plan = FaultPlan::Nth(1, FallibleCall::Buffer);
    EXPECT_EQ(Feed(recording), UnexpectedBehaviour);
    EXPECT_EQ(logger.lines.back(), WrapperLines::NotLocked(E_OUTOFMEMORY));
    EXPECT_EQ(recording.locks, 0);
    EXPECT_EQ(plan.Calls(), 1U) << "no unlock";
}

TEST_F(FeedRecordingFaults, UnlockThatFailsIsTriedOnce)
{
    ScriptedRecording recording(std::vector<float>(100));
    const FaultPlan plan = FaultPlan::Nth(2, FallibleCall::Buffer);
    EXPECT_EQ(Feed(recording), EngineStatus::Success);
    EXPECT_THAT(logger.lines, Contains(WrapperLines::NotUnlocked(E_OUTOFMEMORY)));
    EXPECT_EQ(plan.Calls(), 2U);
    EXPECT_EQ(recording.OpenLocks(), 0);
}

TEST_F(FeedRecordingFaults, EveryEngineCallMayFailAloneOrWithAllThatFollow)
{
    ScriptedRecording recording(std::vector<float>(300));
    engine.flushSteps = 2;
    uint64_t calls = 0;
    {
        const FaultPlan plan = FaultPlan::Count();
        ASSERT_EQ(Feed(recording), EngineStatus::Success);
        calls = plan.Calls() - 2; // the buffer's
    }
    for (uint64_t n = 1; n <= calls; ++n)
    {
        for (const bool alone : {true, false})
        {
            SCOPED_TRACE(testing::Message() << n << (alone ? " alone" : " and all that follow"));
            Open();
            engine.flushSteps = 2;
            const FaultPlan plan = alone ? FaultPlan::Nth(n, FallibleCall::Engine) : FaultPlan::From(n, FallibleCall::Engine);
            EXPECT_EQ(Feed(recording), n == 1 ? ScriptedEngine::InjectedFault : EngineStatus::Success);
            EXPECT_FALSE(detected);
            EXPECT_EQ(recording.OpenLocks(), 0);
        }
    }
}

TEST_F(FeedRecordingFaults, FailedAllocationPassesAndTheRecordingIsUnlocked)
{
    // The scores, the frame, and each line whose text is long.
    EXPECT_GE(ExpectFailedAllocationsToPass({0.0F}, [] {}), 6U);
}

TEST_F(FeedRecordingFaults, EnlargementOfTheScoresThatFailsPasses)
{
    bool enlarging = false;
    ExpectFailedAllocationsToPass(std::vector<float>(1000), [&] {
        enlarging = enlarging || (!events.empty() && events.back() == "VWoVGetScores(1, buffer, 1)");
    });
    EXPECT_TRUE(enlarging);
}

TEST_F(FeedRecordingFaults, AllocationsDoNotGrowWithTheRecording)
{
    engine.keepCalls = false;
    engine.onCall = nullptr;
    logger.onLine = nullptr;
    const auto allocations = [this](std::size_t samples) {
        ScriptedRecording recording(std::vector<float>(samples + 1));
        logger.Take();
        const AllocationCounter counter;
        EXPECT_EQ(Feed(recording), EngineStatus::Success);
        return counter.Calls();
    };
    allocations(1000); // the engine's own counts
    // As many digits in the log line.
    EXPECT_EQ(allocations(100000), allocations(900000));
}

TEST_F(FeedRecordingFaults, OneFrameAndOneScoreVectorServeTheRecording)
{
    constexpr int32_t FrameSize = 777;
    constexpr uint32_t ScoreCount = 333;
    UseFrameSize(FrameSize);
    engine.keepCalls = false;
    engine.onCall = nullptr;
    engine.scoreCount = ScoreCount;
    engine.laterStep.scores.assign(ScoreCount, 0.0F);
    ScriptedRecording recording(std::vector<float>(100000));
    const AllocationCounter frames(FrameSize * sizeof(int16_t));
    const AllocationCounter scores(ScoreCount * sizeof(float));
    EXPECT_EQ(Feed(recording), EngineStatus::Success);
    EXPECT_EQ(frames.Calls(), 1U);
    EXPECT_EQ(scores.Calls(), 1U);
}

} // namespace FeedRecordingFaultsTests

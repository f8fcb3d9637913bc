#include "library/wovwrapper/VeloxWovSDK.h"
#include "tests/support/AllocationCounter.h"
#include "tests/support/FaultInjector.h"
#include "tests/support/WrapperTest.h"

#include <gmock/gmock.h>

#include <new>

namespace FeedRecordingsForEnrollmentFaultsTests
{

class FeedRecordingsForEnrollmentFaults : public SessionTest
{
protected:
    uint32_t Feed(ScriptedRecording& recording)
    {
        IMFMediaBuffer* recordings[]{&recording, &recording};
        const int32_t positions[]{0, 0};
        return wrapper.FeedRecordingsForEnrollment(&session, recordings, 2, positions);
    }
};

TEST_F(FeedRecordingsForEnrollmentFaults, EveryRecordingHasOneFrameBuffer)
{
    engine.keepCalls = false;
    engine.onCall = nullptr;
    ScriptedRecording recording(std::vector<float>(5000));
    const AllocationCounter frames(150 * sizeof(int16_t));
    EXPECT_EQ(Feed(recording), EngineStatus::Success);
    EXPECT_EQ(frames.Calls(), 2U);
}

TEST_F(FeedRecordingsForEnrollmentFaults, EveryFailedAllocationReachesTheCallerAndUnlocks)
{
    uint64_t failures = 0;
    for (bool done = false; !done;)
    {
        SCOPED_TRACE(failures);
        ScriptedRecording recording(std::vector<float>(200));
        try
        {
            const FaultPlan plan = FaultPlan::Nth(failures + 1, FallibleCall::Allocation);
            Feed(recording);
            done = true;
        }
        catch (const std::bad_alloc&)
        {
            ++failures;
        }
        EXPECT_EQ(recording.OpenLocks(), 0);
    }
    // Entry and exit; of each recording its two lines, four of its feeding and its frame.
    EXPECT_GE(failures, 2U + 2U * 7U);
}

TEST_F(FeedRecordingsForEnrollmentFaults, LockAndUnlockMayFail)
{
    for (uint64_t n = 1; n <= 4; ++n)
    {
        SCOPED_TRACE(n);
        ScriptedRecording recording(std::vector<float>(200));
        const FaultPlan plan = FaultPlan::Nth(n, FallibleCall::Buffer);
        const bool lock = n % 2 == 1;
        EXPECT_EQ(Feed(recording), lock ? UnexpectedBehaviour : EngineStatus::Success);
        EXPECT_EQ(recording.OpenLocks(), 0);
    }
}

} // namespace FeedRecordingsForEnrollmentFaultsTests

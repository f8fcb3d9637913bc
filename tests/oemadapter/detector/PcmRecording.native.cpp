#include "oemadapter/detector/PcmRecording.h"

#include "oemadapter/windows/ProcessingFailed.h"
#include "tests/oemadapter/support/LiveObjects.h"
#include "tests/oemadapter/support/PcmTake.h"
#include "tests/support/FaultInjector.h"

#include <gtest/gtest.h>

namespace PcmRecordingFaultsTests
{

TEST(PcmRecordingFaults, FailuresOfTheBufferAreNoFaultOfTheArgumentsAndLeaveNothing)
{
    const std::size_t before = LivePlatformObjects();
    velox::oemadapter::ComPointer<IMFMediaBuffer> recording;
    PcmTake take({1, 2});
    // Create, lock, unlock, set the length.
    const HRESULT expected[] = {E_OUTOFMEMORY, E_OUTOFMEMORY, ProcessingFailed, ProcessingFailed};
    for (uint64_t call = 1; call <= std::size(expected); ++call)
    {
        const FaultPlan plan = FaultPlan::Nth(call);
        EXPECT_EQ(velox::oemadapter::MakeRecording(take.Format(), &recording), expected[call - 1]) << call;
        EXPECT_EQ(recording, nullptr);
        EXPECT_EQ(LivePlatformObjects(), before);
    }
}

} // namespace PcmRecordingFaultsTests

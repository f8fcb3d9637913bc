#include "oemadapter/detector/AudioFormat.h"

#include "tests/oemadapter/support/LiveObjects.h"
#include "tests/support/FaultInjector.h"

#include <mferror.h>

#include <gtest/gtest.h>

namespace AudioFormatFaultsTests
{

TEST(AudioFormatFaults, FailuresAreMediaFoundationsAndLeaveNothing)
{
    const std::size_t before = LivePlatformObjects();
    velox::oemadapter::ComPointer<IMFMediaType> mediaType;
    {
        const FaultPlan plan = FaultPlan::From(1, FallibleCall::CreateMediaType);
        EXPECT_EQ(velox::oemadapter::MakeFloatFormat(&mediaType), E_OUTOFMEMORY);
    }
    {
        const FaultPlan plan = FaultPlan::From(1, FallibleCall::InitMediaType);
        EXPECT_EQ(velox::oemadapter::MakeFloatFormat(&mediaType), MF_E_INVALIDMEDIATYPE);
    }
    EXPECT_EQ(mediaType, nullptr);
    EXPECT_EQ(LivePlatformObjects(), before);
}

} // namespace AudioFormatFaultsTests

#include "tests/library/modelstream/StreamTest.h"
#include "tests/support/FaultInjector.h"
#include "tests/support/ScriptedStream.h"

namespace CheckIStreamForUserModelFaultsTests
{

using CheckIStreamForUserModelFaults = StreamTest;

TEST_F(CheckIStreamForUserModelFaults, WithoutMemoryForTheBufferTheStreamIsNotTouched)
{
    ScriptedStream stream("VWOV model");
    const FaultPlan plan = FaultPlan::Nth(1, FallibleCall::NothrowAllocation);
    EXPECT_EQ(Check(&stream), E_OUTOFMEMORY);
    EXPECT_TRUE(stream.calls.empty());
    EXPECT_EQ(logger.lines,
              StreamLines::CheckEntry + Log(2, 1, "[CheckIStreamForUserModel] Failed to allocate memory for buffer."));
}

} // namespace CheckIStreamForUserModelFaultsTests

#include "tests/library/modelstream/StreamTest.h"
#include "tests/support/FaultInjector.h"
#include "tests/support/ScriptedStream.h"

#include <gmock/gmock.h>

namespace GetUserModelFromIStreamFaultsTests
{

using namespace StreamLines;

using GetUserModelFromIStreamFaults = StreamTest;

TEST_F(GetUserModelFromIStreamFaults, WithoutMemoryForTheModelTheResultIsAPlainFailureKept)
{
    ScriptedStream stream("VWOV model");
    const FaultPlan plan = FaultPlan::Nth(1, FallibleCall::NothrowAllocation);
    EXPECT_EQ(Get(&stream), E_FAIL);
    EXPECT_FALSE(untouched);
    EXPECT_EQ(model, nullptr);
    EXPECT_EQ(size, 10U);
    EXPECT_THAT(stream.calls, testing::ElementsAre("Seek(0, END)", "Seek(0, SET, no position)"));
    EXPECT_EQ(logger.lines, GetEntry + SizeExpected(10) + GetWithoutMemory);
}

} // namespace GetUserModelFromIStreamFaultsTests

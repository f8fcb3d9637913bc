#include "tests/library/configuration/Lines.h"
#include "tests/support/FaultInjector.h"
#include "tests/support/ReaderTest.h"

#include <gmock/gmock.h>

namespace GetPredefinedModelFaultsTests
{

using GetPredefinedModelFaults = ReaderTest;

TEST_F(GetPredefinedModelFaults, FailedAllocationLeavesNullAndNoSize)
{
    uint8_t mark = 0;
    uint8_t* data = &mark;
    uint32_t size = 4711;
    const FaultPlan plan(FaultPlan::Nth(1, FallibleCall::NothrowAllocation));
    EXPECT_EQ(reader.GetPredefinedModel(1033, &data, &size), E_FAIL);
    EXPECT_EQ(data, nullptr);
    EXPECT_EQ(size, 4711U);
    EXPECT_THAT(logger.lines, testing::ElementsAre(ConfigurationLines::FileWithoutMemory("fw_1033.bin")));
}

} // namespace GetPredefinedModelFaultsTests

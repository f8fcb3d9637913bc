#include "tests/library/configuration/Lines.h"
#include "tests/support/FaultInjector.h"
#include "tests/support/ReaderTest.h"

#include <gmock/gmock.h>

namespace GetEnrollmentParametersFaultsTests
{

using GetEnrollmentParametersFaults = ReaderTest;

TEST_F(GetEnrollmentParametersFaults, FailedAllocationLeavesItsMemberNullAndOnlyTheLastFails)
{
    for (const uint64_t failing : {1U, 2U, 3U})
    {
        SCOPED_TRACE(failing);
        EnrollmentParameters parameters;
        const FaultPlan plan(FaultPlan::Nth(failing, FallibleCall::NothrowAllocation));
        EXPECT_EQ(reader.GetEnrollmentParameters(1033, &parameters), failing == 3 ? E_FAIL : S_OK);
        EXPECT_EQ(plan.Calls(), 3U);
        EXPECT_EQ(parameters.keyphraseModel == nullptr, failing == 1);
        EXPECT_EQ(parameters.acousticModel == nullptr, failing == 2);
        EXPECT_EQ(parameters.znormPopulation == nullptr, failing == 3);
        const std::string files[]{"kp_1033.bin", "am_1033.bin", "zn_1033.bin"};
        EXPECT_THAT(logger.Take(), testing::ElementsAre(ConfigurationLines::FileWithoutMemory(files[failing - 1])));
    }
}

} // namespace GetEnrollmentParametersFaultsTests

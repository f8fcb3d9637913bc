#include "tests/support/FaultInjector.h"
#include "tests/support/ReaderTest.h"

#include <gmock/gmock.h>

namespace
{

using testing::ElementsAre;

class GetEnrollmentParametersFaults : public ReaderTest
{
};

struct AllocationCase
{
    uint64_t failing;
    const char* file;
    HRESULT result;
};

TEST_F(GetEnrollmentParametersFaults, FailedAllocationLeavesItsMemberNullAndOnlyTheLastFails)
{
    for (const AllocationCase& variant : {AllocationCase{1, "kp_1033.bin", S_OK}, AllocationCase{2, "am_1033.bin", S_OK},
                                          AllocationCase{3, "zn_1033.bin", E_FAIL}})
    {
        SCOPED_TRACE(variant.file);
        EnrollmentParameters parameters;
        const FaultPlan plan(FaultPlan::Nth(variant.failing, FallibleCall::NothrowAllocation));
        EXPECT_EQ(reader.GetEnrollmentParameters(1033, &parameters), variant.result);
        EXPECT_EQ(plan.Calls(), 3U);
        EXPECT_EQ(parameters.keyphraseModel == nullptr, variant.failing == 1);
        EXPECT_EQ(parameters.acousticModel == nullptr, variant.failing == 2);
        EXPECT_EQ(parameters.znormPopulation == nullptr, variant.failing == 3);
        EXPECT_THAT(logger.Take(),
                    ElementsAre(LogFormat(
                        2, 1, "[LoadFile] Failed to allocate memory for data from file: " + std::string(variant.file) + ".")));
    }
}

} // namespace

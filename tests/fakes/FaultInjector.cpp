#include "FaultInjector.h"

#include <gmock/gmock.h>

#include <vector>

namespace
{

using testing::Each;
using testing::ElementsAre;
using testing::Eq;

/// What four stream calls and then a task memory call are told.
std::vector<bool> Ask()
{
    std::vector<bool> answers;
    for (int call = 0; call < 4; ++call)
    {
        answers.push_back(FaultPlan::ShouldFail(FallibleCall::Stream));
    }
    answers.push_back(FaultPlan::ShouldFail(FallibleCall::TaskMemory));
    return answers;
}

TEST(FaultInjector, NothingFailsWithoutAPlan)
{
    EXPECT_THAT(Ask(), Each(Eq(false)));
}

TEST(FaultInjector, CountFailsNothingAndCounts)
{
    const FaultPlan plan = FaultPlan::Count();
    EXPECT_THAT(Ask(), Each(Eq(false)));
    EXPECT_EQ(plan.Calls(), 5U);
}

TEST(FaultInjector, NthFailsOneCallOfAnyKind)
{
    const FaultPlan plan = FaultPlan::Nth(5);
    EXPECT_THAT(Ask(), ElementsAre(false, false, false, false, true));
    EXPECT_EQ(plan.Calls(), 5U);
}

TEST(FaultInjector, NthOfAKindPassesOverTheOthers)
{
    const FaultPlan plan = FaultPlan::Nth(1, FallibleCall::TaskMemory);
    EXPECT_THAT(Ask(), ElementsAre(false, false, false, false, true));
    EXPECT_EQ(plan.Calls(), 1U);
}

TEST(FaultInjector, FromFailsTheCallAndAllThatFollow)
{
    const FaultPlan plan = FaultPlan::From(3);
    EXPECT_THAT(Ask(), ElementsAre(false, false, true, true, true));
    EXPECT_EQ(plan.Calls(), 5U);
}

TEST(FaultInjector, FromOfAKindPassesOverTheOthers)
{
    const FaultPlan plan = FaultPlan::From(2, FallibleCall::Stream);
    EXPECT_THAT(Ask(), ElementsAre(false, true, true, true, false));
    EXPECT_EQ(plan.Calls(), 4U);
}

TEST(FaultInjector, APauseNeitherFailsNorCounts)
{
    const FaultPlan plan = FaultPlan::From(1);
    {
        const FaultPause pause;
        {
            const FaultPause inner;
        }
        EXPECT_FALSE(FaultPlan::ShouldFail(FallibleCall::Stream));
    }
    EXPECT_EQ(plan.Calls(), 0U);
    EXPECT_TRUE(FaultPlan::ShouldFail(FallibleCall::Stream));
}

TEST(FaultInjector, ThePlanEndsWithItsObject)
{
    {
        const FaultPlan plan = FaultPlan::From(1);
        EXPECT_TRUE(FaultPlan::ShouldFail(FallibleCall::Stream));
    }
    EXPECT_THAT(Ask(), Each(Eq(false)));
}

} // namespace

#include "tests/support/FaultInjector.h"

#include <gtest/gtest.h>

#include <array>
#include <thread>

namespace FaultInjectorTests
{

struct Asked
{
    std::array<bool, 5> answers;
    uint64_t calls;
};

/// What four stream calls and then a task memory call are told. The plan ends before anything else can ask it.
Asked AskUnder(const FaultPlan& plan)
{
    Asked asked{};
    for (std::size_t call = 0; call < 4; ++call)
    {
        asked.answers[call] = FaultPlan::ShouldFail(FallibleCall::Stream);
    }
    asked.answers[4] = FaultPlan::ShouldFail(FallibleCall::TaskMemory);
    asked.calls = plan.Calls();
    return asked;
}

struct PlanCase
{
    const char* description;
    Asked (*ask)();
    std::array<bool, 5> answers;
    uint64_t calls;
};

const PlanCase PlanCases[]{
    {"counts only", [] { return AskUnder(FaultPlan::Count()); }, {false, false, false, false, false}, 5},
    {"one call of any kind", [] { return AskUnder(FaultPlan::Nth(5)); }, {false, false, false, false, true}, 5},
    {"one call of a kind",
     [] { return AskUnder(FaultPlan::Nth(1, FallibleCall::TaskMemory)); },
     {false, false, false, false, true},
     1},
    {"a call and all that follow", [] { return AskUnder(FaultPlan::From(3)); }, {false, false, true, true, true}, 5},
    {"those of a kind", [] { return AskUnder(FaultPlan::From(2, FallibleCall::Stream)); }, {false, true, true, true, false}, 4},
};

TEST(FaultInjector, FailsTheCallsOfThePlan)
{
    for (const PlanCase& planCase : PlanCases)
    {
        SCOPED_TRACE(planCase.description);
        const Asked asked = planCase.ask();
        EXPECT_EQ(asked.answers, planCase.answers);
        EXPECT_EQ(asked.calls, planCase.calls);
    }
}

TEST(FaultInjector, NothingFailsWithoutAPlan)
{
    EXPECT_FALSE(FaultPlan::ShouldFail(FallibleCall::Stream));
    EXPECT_FALSE(FaultPlan::ShouldFail(FallibleCall::Allocation));
}

TEST(FaultInjector, APauseNeitherFailsNorCounts)
{
    const FaultPlan plan = FaultPlan::From(1, FallibleCall::Stream);
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
        const FaultPlan plan = FaultPlan::From(1, FallibleCall::Stream);
        EXPECT_TRUE(FaultPlan::ShouldFail(FallibleCall::Stream));
    }
    EXPECT_FALSE(FaultPlan::ShouldFail(FallibleCall::Stream));
}

TEST(FaultInjector, ThePlanHoldsForItsThreadAlone)
{
    const FaultPlan plan = FaultPlan::From(1, FallibleCall::Stream);
    bool failed = true;
    std::thread([&] { failed = FaultPlan::ShouldFail(FallibleCall::Stream); }).join();
    EXPECT_FALSE(failed);
    EXPECT_EQ(plan.Calls(), 0U);
}

} // namespace FaultInjectorTests

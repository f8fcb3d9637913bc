#include "library/wovwrapper/VeloxWovSDK.h"
#include "tests/scripted-engine/ScriptedEngine.h"
#include "tests/support/FaultInjector.h"

#include <gmock/gmock.h>

namespace ScriptedEngineFaultsFaultsTests
{

using testing::IsEmpty;

TEST(ScriptedEngineFaults, PlanMakesACallFailBeforeTheScriptIsAsked)
{
    ScriptedEngine& engine = GetScriptedEngine();
    engine.Reset();
    engine.Answer("VWoVInitSession", 2, 7);
    uint32_t session = 4711;
    const FaultPlan plan = FaultPlan::From(2, FallibleCall::Engine);
    EXPECT_EQ(VWoVInitSession(&session), EngineStatus::Success);
    EXPECT_EQ(VWoVInitSession(&session), ScriptedEngine::InjectedFault);
    EXPECT_EQ(VWoVDestroySession(session), ScriptedEngine::InjectedFault);
    EXPECT_EQ(plan.Calls(), 3U);
    EXPECT_EQ(engine.calls.at(1).status, ScriptedEngine::InjectedFault);
    EXPECT_THAT(engine.openSessions, IsEmpty());
}

TEST(ScriptedEngineFaults, OwnAllocationsDoNotCount)
{
    ScriptedEngine& engine = GetScriptedEngine();
    engine.Reset();
    uint32_t session = 0;
    uint32_t count = 0;
    uint8_t* model = nullptr;
    const FaultPlan plan = FaultPlan::From(1, FallibleCall::Allocation);
    EXPECT_EQ(VWoVSetAttribute(19, "a text that is too long for the string object itself"), EngineStatus::Success);
    EXPECT_EQ(VWoVInitSession(&session), EngineStatus::Success);
    EXPECT_EQ(VWoVGetScores(session, nullptr, &count), EngineStatus::Success);
    EXPECT_EQ(VWoVFinalizeEnrollment(session, &model), EngineStatus::Success);
    EXPECT_EQ(VWoVDestroySession(session), EngineStatus::Success);
    EXPECT_EQ(plan.Calls(), 0U);
}

} // namespace ScriptedEngineFaultsFaultsTests

#include "IVeloxWovWrapper.h"
#include "tests/support/FaultInjector.h"
#include "tests/support/WrapperTest.h"

#include <gmock/gmock.h>

#include <new>

namespace CreateWovWrapperFaultsTests
{

using testing::IsEmpty;

class CreateWovWrapperFaults : public WrapperTest
{
protected:
    auto Create()
    {
        return KeywordDetectorAdapterImplementation::CreateWovWrapper(&parameters, detection, &logger, 3, constraints);
    }

    std::string constraints = "a text that is too long for the string object itself";
};

TEST_F(CreateWovWrapperFaults, NoMemoryForTheObjectOrItsTextReachesTheCallerBeforeTheEngineIsAsked)
{
    for (const uint64_t n : {1U, 2U})
    {
        SCOPED_TRACE(n);
        const FaultPlan plan = FaultPlan::Nth(n, FallibleCall::Allocation);
        EXPECT_THROW(Create(), std::bad_alloc);
        EXPECT_THAT(events, IsEmpty());
    }
}

TEST_F(CreateWovWrapperFaults, EveryFailedAllocationReachesTheCallerAndDestroysTheProbe)
{
    engine.frameSize = -1;
    uint64_t faults = 0;
    for (bool failed = true; failed;)
    {
        SCOPED_TRACE(faults);
        Restart();
        engine.frameSize = -1;
        try
        {
            const FaultPlan plan = FaultPlan::Nth(faults + 1, FallibleCall::Allocation);
            Create();
            failed = false;
        }
        catch (const std::bad_alloc&)
        {
            ++faults;
        }
        EXPECT_THAT(engine.openSessions, IsEmpty());
    }
    // The object, its text, and each of the two lines.
    EXPECT_GE(faults, 4U);
}

TEST_F(CreateWovWrapperFaults, EveryEngineCallMayFail)
{
    for (uint64_t n = 1; n <= 4; ++n)
    {
        SCOPED_TRACE(n);
        Restart();
        const FaultPlan plan = FaultPlan::Nth(n, FallibleCall::Engine);
        EXPECT_NE(Create(), nullptr);
        EXPECT_EQ(engine.calls.at(n - 1).status, ScriptedEngine::InjectedFault);
        EXPECT_THAT(engine.openSessions, IsEmpty());
    }
}

} // namespace CreateWovWrapperFaultsTests

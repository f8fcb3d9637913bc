#include "tests/support/AllocationCounter.h"
#include "tests/support/EngineOperationTest.h"
#include "tests/support/FaultInjector.h"
#include "tests/support/RegistryDouble.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace
{

class VerifyUserKeywordFaults : public EngineOperationTest
{
protected:
    HRESULT Verify()
    {
        ScriptedRecording recording(std::vector<float>(200));
        return adapter.VerifyUserKeyword(nullptr, 1, 1033, 0, &recording);
    }
};

TEST_F(VerifyUserKeywordFaults, WithoutMemoryForTheParametersItFails)
{
    const FaultPlan plan = FaultPlan::Nth(1, FallibleCall::NothrowAllocation);
    EXPECT_EQ(Verify(), E_FAIL);
    EXPECT_EQ(logger.lines.back(), Log(1, 0, "[VerifyUserKeyword] Failed to create enrollment parameters."));
}

TEST_F(VerifyUserKeywordFaults, ExceptionAtAnyPointLosesNothing)
{
    engine.laterStep.scores = {0.875F};
    ASSERT_EQ(Verify(), S_OK);
    const std::size_t all = events.size();
    for (std::size_t n = 1; n <= all; ++n)
    {
        SCOPED_TRACE(n);
        Restart();
        events = {};
        const std::size_t before = AllocatedBytes();
        engine.laterStep.scores = {0.875F};
        throwingEvent = n;
        try
        {
            EXPECT_EQ(Verify(), E_FAIL);
        }
        catch (const std::runtime_error&)
        {
            // All but those of the wrapper's creation.
        }
        Restart();
        events = {};
        EXPECT_EQ(AllocatedBytes(), before);
        EXPECT_EQ(OpenRegistryKeys(), 0U);
    }
}

} // namespace

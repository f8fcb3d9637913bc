#include "tests/library/adapter/EngineOperationFaults.h"

namespace VerifyUserKeywordFaultsTests
{

using namespace RequestLines;

class VerifyUserKeywordFaults : public EngineOperationFaults
{
protected:
    HRESULT Verify()
    {
        engine.laterStep.scores = {0.875F};
        ScriptedRecording recording(std::vector<float>(200));
        return adapter.VerifyUserKeyword(nullptr, 1, 1033, 0, &recording);
    }
};

TEST_F(VerifyUserKeywordFaults, WithoutMemoryForTheParametersItFails)
{
    const FaultPlan plan = FaultPlan::Nth(1, FallibleCall::NothrowAllocation);
    EXPECT_EQ(Verify(), E_FAIL);
    EXPECT_EQ(logger.lines.back(), ParametersNotCreated(Verifying));
}

TEST_F(VerifyUserKeywordFaults, ExceptionAtAnyPointLosesNothing)
{
    ExpectNoLossAtAnyException([this] { return Verify(); });
}

} // namespace VerifyUserKeywordFaultsTests

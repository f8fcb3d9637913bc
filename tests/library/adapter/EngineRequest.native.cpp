#include "tests/library/adapter/EngineRequest.h"

#include "library/wovwrapper/VeloxWovWrapper.h"
#include "tests/library/adapter/EngineOperationFaults.h"

#include <gmock/gmock.h>

#include <new>

namespace EngineRequestFaultsTests
{

using testing::ElementsAre;
using testing::IsEmpty;

using namespace Requesting;

class EngineRequestFaults : public EngineOperationFaults
{
protected:
    HRESULT Open(EngineRequest* request)
    {
        return OpenEngineRequest(&reader, &logger, 1033, Texts, request);
    }

    /// Bytes that a request with these constraints leaves behind.
    std::size_t LossOfARequest(const std::string& constraints)
    {
        WriteWholeFile(configuration.ConstraintsPath(), constraints);
        return LossOf([this] {
            EngineRequest request;
            EXPECT_EQ(Open(&request), S_OK);
        });
    }

    ConfigurationReader reader{configuration.Path(), &logger};
};

TEST_F(EngineRequestFaults, WithoutMemoryForTheParametersNothingIsRead)
{
    EngineRequest request;
    const FaultPlan plan = FaultPlan::Nth(1, FallibleCall::NothrowAllocation);
    EXPECT_EQ(Open(&request), E_FAIL);
    EXPECT_EQ(request.parameters, nullptr);
    EXPECT_THAT(logger.lines, ElementsAre(RequestLines::ParametersNotCreated(Operation)));
    EXPECT_THAT(engine.calls, IsEmpty());
}

TEST_F(EngineRequestFaults, WithoutMemoryForTheWrapperOrItsTextThereIsNoRequest)
{
    WriteWholeFile(configuration.ConstraintsPath(), "a text that is too long for the string object itself");
    EngineRequest first;
    const AllocationCounter wrappers(sizeof(VeloxWovWrapper));
    uint64_t allocations = 0;
    {
        const FaultPlan plan = FaultPlan::Nth(1000000, FallibleCall::Allocation);
        ASSERT_EQ(Open(&first), S_OK);
        allocations = plan.Calls();
    }
    ASSERT_EQ(wrappers.Calls(), 1U);
    // The last two allocations of an opening.
    for (const uint64_t n : {allocations - 1, allocations})
    {
        SCOPED_TRACE(n);
        Restart();
        EngineRequest request;
        const FaultPlan plan = FaultPlan::Nth(n, FallibleCall::Allocation);
        EXPECT_EQ(Open(&request), E_FAIL);
        EXPECT_EQ(request.wrapper, nullptr);
        EXPECT_EQ(logger.lines.back(), WrapperNotCreated);
        EXPECT_THAT(engine.calls, IsEmpty());
    }
}

TEST_F(EngineRequestFaults, LogLevelThatCannotBeReadIsThreeAndTheKeyIsClosed)
{
    for (const FallibleCall call : {FallibleCall::RegistryOpen, FallibleCall::RegistryQuery})
    {
        SCOPED_TRACE(static_cast<int>(call));
        Restart();
        EngineRequest request;
        const FaultPlan plan = FaultPlan::Nth(1, call);
        EXPECT_EQ(Open(&request), S_OK);
        EXPECT_EQ(logger.lines.back(), Fallback);
        EXPECT_EQ(OpenRegistryKeys(), 0U);
    }
}

// Kept: the wrapper's storage is freed without its destructor, and so a long text of constraints stays.
TEST_F(EngineRequestFaults, ReleasedRequestLosesItsConstraintsWhenTheyAreLong)
{
    const std::string longText = "a text that is too long for the string object itself";
    LossOfARequest(longText);
    EXPECT_EQ(LossOfARequest("memory=160k"), 0U);
    const std::size_t loss = LossOfARequest(longText);
    EXPECT_GT(loss, longText.size());
    EXPECT_LT(loss, longText.size() + 32);
}

} // namespace EngineRequestFaultsTests

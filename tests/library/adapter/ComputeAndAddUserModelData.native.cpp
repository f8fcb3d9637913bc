#include "tests/support/AllocationCounter.h"
#include "tests/support/EngineOperationTest.h"
#include "tests/support/FaultInjector.h"
#include "tests/support/RegistryDouble.h"
#include "tests/support/ScriptedStream.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace
{

using testing::IsEmpty;

class ComputeAndAddUserModelDataFaults : public EngineOperationTest
{
protected:
    HRESULT Compute(ScriptedStream& stream)
    {
        ScriptedRecording recording(std::vector<float>(100));
        IMFMediaBuffer* recordings[]{&recording};
        const int32_t position = 0;
        return adapter.ComputeAndAddUserModelData(&stream, {1, 1033}, &position, recordings, 1);
    }

    /// Bytes that a computation leaves behind when this stream operation is refused.
    std::size_t LossOfARefused(const std::string& operation)
    {
        const std::size_t before = AllocatedBytes();
        {
            ScriptedStream stream;
            stream.Answer(operation, 1, STG_E_ACCESSDENIED);
            EXPECT_EQ(Compute(stream), operation == "Commit" ? S_OK : E_FAIL);
        }
        Restart();
        events = {};
        return AllocatedBytes() - before;
    }
};

TEST_F(ComputeAndAddUserModelDataFaults, WithoutMemoryForTheParametersItFails)
{
    ScriptedStream stream;
    const FaultPlan plan = FaultPlan::Nth(1, FallibleCall::NothrowAllocation);
    EXPECT_EQ(Compute(stream), E_FAIL);
    EXPECT_EQ(logger.lines.back(), Log(1, 0, "[ComputeAndAddUserModelData] Failed to create enrollment parameters instance."));
}

TEST_F(ComputeAndAddUserModelDataFaults, WithoutMemoryForTheModelTheTrainingFailsWithItsStatus)
{
    ScriptedStream stream;
    // The parameters and their three files come before it.
    const FaultPlan plan = FaultPlan::Nth(5, FallibleCall::NothrowAllocation);
    EXPECT_EQ(Compute(stream), E_FAIL);
    EXPECT_EQ(logger.lines.back(), LogWithStatus(1, 0, "[ComputeAndAddUserModelData] Failed to train model.", E_OUTOFMEMORY));
    EXPECT_THAT(stream.calls, IsEmpty());
}

TEST_F(ComputeAndAddUserModelDataFaults, TrainingThatFailsAfterTheAllocationLosesNothing)
{
    ScriptedStream stream;
    engine.Answer("VWoVPrepareLpeData", 2, 7);
    EXPECT_EQ(Compute(stream), E_FAIL);
    Restart();
    events = {};
    const std::size_t before = AllocatedBytes();
    engine.Answer("VWoVPrepareLpeData", 2, 7);
    EXPECT_EQ(Compute(stream), E_FAIL);
    Restart();
    events = {};
    EXPECT_EQ(AllocatedBytes(), before);
}

TEST_F(ComputeAndAddUserModelDataFaults, StreamThatCannotBeWrittenLosesTheModelKept)
{
    LossOfARefused("Write");
    EXPECT_EQ(LossOfARefused("Commit"), 0U);
    for (const char* operation : {"SetSize", "Seek", "Write"})
    {
        SCOPED_TRACE(operation);
        EXPECT_GE(LossOfARefused(operation), engine.lpeData.size());
    }
}

TEST_F(ComputeAndAddUserModelDataFaults, ExceptionAtAnyPointLosesNothing)
{
    {
        ScriptedStream stream;
        ASSERT_EQ(Compute(stream), S_OK);
    }
    const std::size_t all = events.size();
    for (std::size_t n = 1; n <= all; ++n)
    {
        SCOPED_TRACE(n);
        Restart();
        events = {};
        const std::size_t before = AllocatedBytes();
        throwingEvent = n;
        try
        {
            ScriptedStream stream;
            EXPECT_EQ(Compute(stream), E_FAIL);
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

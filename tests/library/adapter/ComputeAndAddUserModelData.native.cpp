#include "tests/library/adapter/EngineOperationFaults.h"
#include "tests/support/ScriptedStream.h"

#include <gmock/gmock.h>

namespace ComputeAndAddUserModelDataFaultsTests
{

using namespace RequestLines;
using testing::IsEmpty;

class ComputeAndAddUserModelDataFaults : public EngineOperationFaults
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
        return LossOf([&] {
            ScriptedStream stream;
            stream.Answer(operation, 1, STG_E_ACCESSDENIED);
            EXPECT_EQ(Compute(stream), operation == "Commit" ? S_OK : E_FAIL);
        });
    }
};

TEST_F(ComputeAndAddUserModelDataFaults, WithoutMemoryForTheParametersOrTheModelItFails)
{
    // The parameters; their three files and then the model.
    for (const uint64_t n : {1U, 5U})
    {
        SCOPED_TRACE(n);
        ScriptedStream stream;
        const FaultPlan plan = FaultPlan::Nth(n, FallibleCall::NothrowAllocation);
        EXPECT_EQ(Compute(stream), E_FAIL);
        EXPECT_EQ(logger.Take().back(), n == 1 ? ParametersNotCreated(Computing) : NotTrained(E_OUTOFMEMORY));
        EXPECT_THAT(stream.calls, IsEmpty());
    }
}

TEST_F(ComputeAndAddUserModelDataFaults, TrainingThatFailsAfterTheAllocationLosesNothing)
{
    const auto fail = [this] {
        ScriptedStream stream;
        engine.Answer("VWoVPrepareLpeData", 2, 7);
        EXPECT_EQ(Compute(stream), E_FAIL);
    };
    LossOf(fail); // The first run pays for what the runtime keeps.
    EXPECT_EQ(LossOf(fail), 0U);
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
    ExpectNoLossAtAnyException([this] {
        ScriptedStream stream;
        return Compute(stream);
    });
}

} // namespace ComputeAndAddUserModelDataFaultsTests

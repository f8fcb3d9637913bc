#include "library/modelstream/UserModelStream.h"
#include "tests/support/AdapterTest.h"
#include "tests/support/FaultInjector.h"
#include "tests/support/ScriptedStream.h"

#include <gmock/gmock.h>

namespace
{

using testing::ElementsAre;

class GetUserModelFromIStreamFaults : public AdapterTest
{
};

TEST_F(GetUserModelFromIStreamFaults, WithoutMemoryForTheModelTheResultIsAPlainFailureKept)
{
    ScriptedStream stream("VWOV model");
    uint8_t before = 0;
    uint8_t* data = &before;
    uint32_t size = 4711;
    HRESULT result = S_OK;
    {
        const FaultPlan plan = FaultPlan::Nth(1, FallibleCall::NothrowAllocation);
        result = ::GetUserModelFromIStream(&stream, data, size, &logger);
    }
    EXPECT_EQ(result, E_FAIL);
    EXPECT_EQ(data, nullptr);
    EXPECT_EQ(size, 10U);
    EXPECT_THAT(stream.calls, ElementsAre("Seek(0, END)", "Seek(0, SET, no position)"));
    EXPECT_THAT(logger.lines, ElementsAre(Log(4, 1, "[GetUserModelFromIStream] Entry."),
                                          LogFormat(5, 1, "[GetUserModelFromIStream] Expected user model size from IStream: 10."),
                                          Log(2, 1, "[GetUserModelFromIStream] Failed to allocate memory for model data.")));
}

} // namespace

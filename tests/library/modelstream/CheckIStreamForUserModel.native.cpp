#include "library/modelstream/UserModelStream.h"
#include "tests/support/AdapterTest.h"
#include "tests/support/FaultInjector.h"
#include "tests/support/ScriptedStream.h"

#include <gmock/gmock.h>

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

class CheckIStreamForUserModelFaults : public AdapterTest
{
};

TEST_F(CheckIStreamForUserModelFaults, WithoutMemoryForTheBufferTheStreamIsNotTouched)
{
    ScriptedStream stream("VWOV model");
    HRESULT result = S_OK;
    {
        const FaultPlan plan = FaultPlan::Nth(1, FallibleCall::NothrowAllocation);
        result = ::CheckIStreamForUserModel(&stream, &logger);
    }
    EXPECT_EQ(result, E_OUTOFMEMORY);
    EXPECT_THAT(stream.calls, IsEmpty());
    EXPECT_THAT(logger.lines, ElementsAre(Log(4, 1, "[CheckIStreamForUserModel] Entry."),
                                          Log(2, 1, "[CheckIStreamForUserModel] Failed to allocate memory for buffer.")));
}

} // namespace

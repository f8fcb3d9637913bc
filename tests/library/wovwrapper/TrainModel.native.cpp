#include "tests/library/wovwrapper/Lines.h"
#include "tests/support/AllocationCounter.h"
#include "tests/support/FaultInjector.h"
#include "tests/support/WrapperTest.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <new>
#include <optional>

namespace TrainModelFaultsTests
{

using namespace WrapperLines;
using testing::IsEmpty;

constexpr uint32_t Untouched = 4711;

class TrainModelFaults : public WrapperTest
{
protected:
    /// The result, or none when a std::bad_alloc passed.
    std::optional<HRESULT> Train()
    {
        IMFMediaBuffer* recordings[]{&recording};
        const int32_t position = 0;
        std::optional<HRESULT> result;
        try
        {
            result = wrapper.TrainModel(recordings, 1, &position, &model, &size);
        }
        catch (const std::bad_alloc&)
        {
            // No result.
        }
        EXPECT_EQ(recording.OpenLocks(), 0);
        return result;
    }

    void ReleaseModel()
    {
        delete[] model;
        model = nullptr;
        size = Untouched;
    }

    ScriptedRecording recording{std::vector<float>(100)};
    uint8_t* model = nullptr;
    uint32_t size = Untouched;
};

TEST_F(TrainModelFaults, WithoutMemoryForTheModelTheTrainingIsDestroyed)
{
    {
        const FaultPlan plan = FaultPlan::Nth(1, FallibleCall::NothrowAllocation);
        EXPECT_EQ(Train(), E_OUTOFMEMORY);
    }
    EXPECT_EQ(model, nullptr);
    EXPECT_EQ(size, Untouched);
    EXPECT_EQ(Lines(events.end() - 4, events.end()),
              Call("VWoVPrepareLpeData", 1, "null, 0") + LpeDataSize(13) + TrainingWithoutMemory + Destroy(1));
    EXPECT_THAT(engine.openSessions, IsEmpty());
}

TEST_F(TrainModelFaults, ModelBlockIsExactlyOfTheEnginesSize)
{
    constexpr std::size_t Size = 12347;
    engine.lpeData.assign(Size, 'x');
    const AllocationCounter blocks(Size);
    EXPECT_EQ(Train(), S_OK);
    EXPECT_EQ(blocks.Calls(), 1U);
    EXPECT_EQ(size, Size);
    ReleaseModel();
}

TEST_F(TrainModelFaults, EveryFailedAllocationReachesTheCallerAndLosesNothing)
{
    ASSERT_EQ(Train(), S_OK);
    ReleaseModel();
    uint64_t failures = 0;
    for (bool done = false; !done;)
    {
        SCOPED_TRACE(failures);
        Restart();
        const std::size_t before = AllocatedBytes();
        {
            const FaultPlan plan = FaultPlan::Nth(failures + 1, FallibleCall::Allocation);
            done = Train().has_value();
        }
        ReleaseModel();
        // A session that never became open for the wrapper is nobody's.
        const bool opened = std::count(events.begin(), events.end(), OpenExit) > 0;
        EXPECT_TRUE(engine.openSessions.empty() || !opened);
        Restart();
        EXPECT_EQ(AllocatedBytes(), before);
        failures += done ? 0 : 1;
    }
    EXPECT_GT(failures, 10U);
}

TEST_F(TrainModelFaults, EveryEngineCallMayFail)
{
    ASSERT_EQ(Train(), S_OK);
    ReleaseModel();
    const std::size_t calls = engine.calls.size();
    for (uint64_t n = 1; n <= calls; ++n)
    {
        SCOPED_TRACE(n);
        Restart();
        {
            const FaultPlan plan = FaultPlan::Nth(n, FallibleCall::Engine);
            EXPECT_TRUE(Train().has_value());
        }
        EXPECT_EQ(engine.calls.at(n - 1).status, ScriptedEngine::InjectedFault);
        ReleaseModel();
    }
}

} // namespace TrainModelFaultsTests

#include "tests/library/adapter/Lines.h"
#include "tests/support/AllocationCounter.h"
#include "tests/support/ArmingTest.h"
#include "tests/support/FaultInjector.h"
#include "tests/support/TaskMemory.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace BuildArmingPatternDataFaultsTests
{

using namespace ArmingLines;
using namespace StreamLines;

class BuildArmingPatternDataFaults : public ArmingTest
{
protected:
    /// Arms 1033 with a user model of 9 bytes whose read moves at most so many bytes and then gives this result.
    /// @return bytes that were allocated and not freed
    std::size_t LossOfArming(uint32_t mostBytes, HRESULT shortResult)
    {
        const std::size_t before = AllocatedBytes();
        {
            ScriptedStream stream("VWOV user");
            stream.mostBytes = mostBytes;
            stream.shortResult = shortResult;
            EXPECT_EQ(Arm(&stream, 1033).result, shortResult);
            logger.Take();
        }
        return AllocatedBytes() - before;
    }
};

TEST_F(BuildArmingPatternDataFaults, WithoutTaskMemoryThereIsNoPatternButTheModelKindIsRecorded)
{
    for (const bool userModel : {true, false})
    {
        SCOPED_TRACE(userModel);
        Armed(userModel ? "" : "VWOV other", 1040);
        logger.Take();

        ScriptedStream stream(userModel ? "VWOV user" : "");
        const std::size_t blocks = LiveTaskMemoryBlocks();
        const FaultPlan plan = FaultPlan::Nth(1, FallibleCall::TaskMemory);
        ExpectNotArmed(E_OUTOFMEMORY, &stream, {1, 1033});
        EXPECT_EQ(logger.lines,
                  Choosing(1033, userModel) + (userModel ? ModelRead(9) + DynamicSize(9) : Lines()) + WithoutMemory);
        ExpectRecord(userModel, 1040);
        EXPECT_EQ(LiveTaskMemoryBlocks(), blocks);
    }
}

TEST_F(BuildArmingPatternDataFaults, TaskMemoryIsAskedForUpToThePatternThatJustFits32Bits)
{
    for (const auto& [size, requests] : {std::pair{0xFFFFFFD3U, 1U}, {0xFFFFFFD4U, 0U}})
    {
        SCOPED_TRACE(size);
        ScriptedStream stream("VWOV user");
        stream.reportedEnd = size;
        stream.claimedCount = size;
        const FaultPlan plan = FaultPlan::Nth(1, FallibleCall::TaskMemory);
        ExpectNotArmed(E_OUTOFMEMORY, &stream, {1, 1033});
        EXPECT_EQ(plan.Calls(), requests);
        logger.Take();
    }
}

TEST_F(BuildArmingPatternDataFaults, WithoutMemoryForTheCheckThePredefinedModelIsArmed)
{
    const FaultPlan plan = FaultPlan::Nth(1, FallibleCall::NothrowAllocation);
    EXPECT_EQ(Armed("VWOV user", 1033), "firmware 1033");
    ExpectRecord(false, 1033);
}

TEST_F(BuildArmingPatternDataFaults, WithoutMemoryForTheModelArmingFails)
{
    for (const bool userModel : {true, false})
    {
        SCOPED_TRACE(userModel);
        ScriptedStream stream(userModel ? "VWOV user" : "");
        const FaultPlan plan = FaultPlan::Nth(2, FallibleCall::NothrowAllocation);
        ExpectNotArmed(E_FAIL, &stream, {1, 1033});
        EXPECT_EQ(logger.Take().back(), userModel ? UserModelFailed : PredefinedModelFailed);
        ExpectRecord(false, 0);
    }
}

TEST_F(BuildArmingPatternDataFaults, EverySingleStreamFailureEndsInAPatternOrItsCode)
{
    // Check: seek, read. Model: seek, seek; the read is left to the tests that lose its block.
    for (uint64_t call = 1; call <= 4; ++call)
    {
        SCOPED_TRACE(call);
        const std::size_t blocks = LiveTaskMemoryBlocks();
        ScriptedStream stream("VWOV user");
        const FaultPlan plan = FaultPlan::Nth(call, FallibleCall::Stream);
        const ArmingOutcome outcome = Arm(&stream, 1033);
        EXPECT_EQ(outcome.result, call <= 2 ? S_OK : STG_E_MEDIUMFULL);
        EXPECT_EQ(outcome.pattern.empty(), call > 2);
        EXPECT_EQ(LiveTaskMemoryBlocks(), blocks);
    }
}

TEST_F(BuildArmingPatternDataFaults, LoggerThatThrowsAtAnyLineLosesNoBlock)
{
    ScriptedStream stream("VWOV user");
    ASSERT_EQ(Arm(&stream, 1033).result, S_OK);
    const std::size_t lines = logger.Take().size();
    const std::size_t blocks = LiveTaskMemoryBlocks();
    for (std::size_t line = 0; line + 1 < lines; ++line)
    {
        SCOPED_TRACE(line);
        std::size_t written = 0;
        logger.onLine = [&](const LogLine&) {
            if (written++ == line)
            {
                throw std::runtime_error("refused");
            }
        };
        ScriptedStream again("VWOV user");
        EXPECT_THROW(Arm(&again, 1033), std::runtime_error);
        logger.onLine = nullptr;
        EXPECT_EQ(LiveTaskMemoryBlocks(), blocks);
    }
}

TEST_F(BuildArmingPatternDataFaults, ModelBlockOfAReadThatIsNoPlainSuccessIsDroppedKept)
{
    // The first arming pays for what the runtime keeps.
    LossOfArming(9, S_OK);
    EXPECT_EQ(LossOfArming(9, S_OK), 0U);
    EXPECT_GE(LossOfArming(6, S_FALSE), 9U);
    EXPECT_GE(LossOfArming(6, STG_E_READFAULT), 9U);
}

} // namespace BuildArmingPatternDataFaultsTests

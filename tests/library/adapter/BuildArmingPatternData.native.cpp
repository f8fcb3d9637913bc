#include "tests/support/AllocationCounter.h"
#include "tests/support/ArmingTest.h"
#include "tests/support/FaultInjector.h"
#include "tests/support/PrivateAccess.h"
#include "tests/support/ScriptedStream.h"
#include "tests/support/TaskMemory.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace
{

using testing::IsEmpty;

const LogLine UserModelFailed = Log(1, 0, "[BuildArmingPatternData] Failed to get user model.");

class BuildArmingPatternDataFaults : public ArmingTest
{
protected:
    void ExpectArmed(bool userModel, uint16_t languageId)
    {
        EXPECT_EQ(PrivateAccess::UserModelArmed(adapter), userModel);
        EXPECT_EQ(PrivateAccess::ArmedLanguageId(adapter), languageId);
    }

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
    struct Case
    {
        const char* content;
        bool userModel;
    };
    for (const Case& one : {Case{"VWOV user", true}, Case{"", false}})
    {
        SCOPED_TRACE(one.content);
        ScriptedStream other(one.userModel ? "" : "VWOV other");
        ASSERT_EQ(Arm(&other, 1040).result, S_OK);
        logger.Take();

        ScriptedStream stream(one.content);
        const std::size_t blocks = LiveTaskMemoryBlocks();
        const FaultPlan plan = FaultPlan::Nth(1, FallibleCall::TaskMemory);
        const ArmingOutcome outcome = Arm(&stream, 1033);
        EXPECT_EQ(outcome.result, E_OUTOFMEMORY);
        EXPECT_THAT(outcome.pattern, IsEmpty());
        EXPECT_EQ(logger.lines.back(), Log(1, 0, "[BuildArmingPatternData] Failed to allocate memory for pattern data."));
        for (const LogLine& line : logger.lines)
        {
            EXPECT_THAT(line.text, testing::Not(testing::HasSubstr("Detection parameters")));
        }
        ExpectArmed(one.userModel, 1040);
        EXPECT_EQ(LiveTaskMemoryBlocks(), blocks);
    }
}

TEST_F(BuildArmingPatternDataFaults, WithoutMemoryForTheCheckThePredefinedModelIsArmed)
{
    ScriptedStream stream("VWOV user");
    const FaultPlan plan = FaultPlan::Nth(1, FallibleCall::NothrowAllocation);
    const ArmingOutcome outcome = Arm(&stream, 1033);
    EXPECT_EQ(outcome.result, S_OK);
    EXPECT_EQ(std::string(outcome.pattern.begin() + 44, outcome.pattern.end()), "firmware 1033");
    ExpectArmed(false, 1033);
}

TEST_F(BuildArmingPatternDataFaults, WithoutMemoryForTheUserModelArmingFails)
{
    ScriptedStream stream("VWOV user");
    const FaultPlan plan = FaultPlan::Nth(2, FallibleCall::NothrowAllocation);
    const ArmingOutcome outcome = Arm(&stream, 1033);
    EXPECT_EQ(outcome.result, E_FAIL);
    EXPECT_THAT(outcome.pattern, IsEmpty());
    EXPECT_EQ(logger.lines.back(), UserModelFailed);
    ExpectArmed(false, 0);
}

TEST_F(BuildArmingPatternDataFaults, WithoutMemoryForThePredefinedModelArmingFails)
{
    ScriptedStream stream;
    const FaultPlan plan = FaultPlan::Nth(2, FallibleCall::NothrowAllocation);
    const ArmingOutcome outcome = Arm(&stream, 1033);
    EXPECT_EQ(outcome.result, E_FAIL);
    EXPECT_THAT(outcome.pattern, IsEmpty());
    EXPECT_EQ(logger.lines.back(), Log(1, 0, "[BuildArmingPatternData] Failed to get predefined model."));
    ExpectArmed(false, 0);
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

} // namespace

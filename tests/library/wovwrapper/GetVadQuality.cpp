#include "library/wovwrapper/VeloxWovSDK.h"
#include "tests/support/WrapperTest.h"

#include <gmock/gmock.h>

#include <limits>

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

class GetVadQuality : public WrapperTest
{
protected:
    GetVadQuality()
    {
        Open();
    }

    /// Opens a session, which has taken no step, and forgets how.
    void Open()
    {
        Restart();
        session = 0;
        EXPECT_EQ(wrapper.InitializeSession(&session), EngineStatus::Success);
        logger.Take();
        TakeEvents();
    }

    uint32_t Get()
    {
        return wrapper.GetVadQuality(session, &sum, &count);
    }

    uint32_t session = 0;
    int64_t sum = 1000;
    int32_t count = 10;
};

TEST_F(GetVadQuality, AddsTheQuality)
{
    engine.laterStep.vadQuality = 70;
    EXPECT_EQ(Get(), EngineStatus::Success);
    EXPECT_EQ(sum, 1070);
    EXPECT_EQ(count, 11);
    EXPECT_THAT(events, ElementsAre("VWoVGetIntOutput(1, 2, buffer, 1)", "VWoVGetIntOutput(1, 6, buffer, 1)"));
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_F(GetVadQuality, QualityIsSigned)
{
    for (const int32_t quality : {-1, 0, 1, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()})
    {
        SCOPED_TRACE(quality);
        sum = 0;
        engine.laterStep.vadQuality = quality;
        EXPECT_EQ(Get(), EngineStatus::Success);
        EXPECT_EQ(Get(), EngineStatus::Success);
        EXPECT_EQ(sum, 2 * int64_t{quality});
    }
}

TEST_F(GetVadQuality, FrameWithTheFlagIsNotSampled)
{
    for (const int32_t flag : {1, -1, 256, std::numeric_limits<int32_t>::min()})
    {
        SCOPED_TRACE(flag);
        Open();
        engine.laterStep.vadFlag = flag;
        EXPECT_EQ(Get(), EngineStatus::Success);
        EXPECT_EQ(sum, 1000);
        EXPECT_EQ(count, 10);
        EXPECT_THAT(events, ElementsAre("VWoVGetIntOutput(1, 2, buffer, 1)"));
    }
}

TEST_F(GetVadQuality, FailedFlagIsLoggedAndTheQualitySampledAllTheSame)
{
    for (const uint32_t status : {7U, EngineStatus::BufferTooSmall, EngineStatus::NothingLeft})
    {
        SCOPED_TRACE(status);
        Open();
        sum = 0;
        engine.laterStep.vadFlag = 1;
        engine.Answer("VWoVGetIntOutput", 1, status);
        EXPECT_EQ(Get(), EngineStatus::Success) << "the status of the second call";
        EXPECT_EQ(sum, 100);
        EXPECT_THAT(events, ElementsAre("VWoVGetIntOutput(1, 2, buffer, 1)", "[GetVadQuality] Failed to get VAD output.",
                                        "VWoVGetIntOutput(1, 6, buffer, 1)"));
        EXPECT_THAT(logger.lines, ElementsAre(LogWithCode(3, 1, "[GetVadQuality] Failed to get VAD output.", status)));
    }
}

TEST_F(GetVadQuality, FailedQualityCountsAsAFrameOfQualityZeroKept)
{
    for (const uint32_t status : {7U, EngineStatus::BufferTooSmall, EngineStatus::NothingLeft})
    {
        SCOPED_TRACE(status);
        Open();
        sum = 1000;
        count = 10;
        engine.Answer("VWoVGetIntOutput", 2, status);
        EXPECT_EQ(Get(), status);
        EXPECT_EQ(sum, 1000);
        EXPECT_EQ(count, 11);
        EXPECT_THAT(events, ElementsAre("VWoVGetIntOutput(1, 2, buffer, 1)", "VWoVGetIntOutput(1, 6, buffer, 1)",
                                        "[GetVadQuality] Failed to get VAD output."));
        EXPECT_THAT(logger.lines, ElementsAre(LogWithCode(3, 1, "[GetVadQuality] Failed to get VAD output.", status)));
    }
}

TEST_F(GetVadQuality, BothFailuresAreLoggedTheSame)
{
    engine.Answer("VWoVGetIntOutput", 1, 7);
    engine.Answer("VWoVGetIntOutput", 2, 8);
    EXPECT_EQ(Get(), 8U);
    EXPECT_EQ(count, 11);
    EXPECT_THAT(logger.lines, ElementsAre(LogWithCode(3, 1, "[GetVadQuality] Failed to get VAD output.", 7),
                                          LogWithCode(3, 1, "[GetVadQuality] Failed to get VAD output.", 8)));
}

TEST_F(GetVadQuality, CountOfTheFirstReadIsTheRoomOfTheSecondKept)
{
    engine.breach = EngineBreach::CountZeroed;
    EXPECT_EQ(Get(), EngineStatus::Success);
    EXPECT_EQ(sum, 1000) << "there was no room for the quality";
    EXPECT_EQ(count, 11);
    EXPECT_THAT(events, ElementsAre("VWoVGetIntOutput(1, 2, buffer, 1)", "VWoVGetIntOutput(1, 6, buffer, 0)"));
}

TEST_F(GetVadQuality, ExceptionAtAnyPointLeavesTheSums)
{
    // The flag, its line, the quality, its line.
    for (std::size_t n = 1; n <= 4; ++n)
    {
        SCOPED_TRACE(n);
        throwingEvent.reset();
        Open();
        engine.Answer("VWoVGetIntOutput", 1, 7);
        engine.Answer("VWoVGetIntOutput", 2, 7);
        throwingEvent = n;
        EXPECT_THROW(Get(), std::runtime_error);
        EXPECT_EQ(sum, 1000);
        EXPECT_EQ(count, 10);
    }
}

} // namespace

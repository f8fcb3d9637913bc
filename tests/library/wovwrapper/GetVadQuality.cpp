#include "library/wovwrapper/VeloxWovSDK.h"
#include "tests/library/wovwrapper/Lines.h"
#include "tests/support/WrapperTest.h"

#include <gmock/gmock.h>

#include <limits>

namespace GetVadQualityTests
{

const Lines Flag = "VWoVGetIntOutput(1, 2, buffer, 1)";
const Lines Quality = "VWoVGetIntOutput(1, 6, buffer, 1)";

class GetVadQuality : public SessionTest
{
protected:
    uint32_t Get()
    {
        return wrapper.GetVadQuality(session, &sum, &count);
    }

    int64_t sum = 1000;
    int32_t count = 10;
};

TEST_F(GetVadQuality, AddsTheQuality)
{
    engine.laterStep.vadQuality = 70;
    EXPECT_EQ(Get(), EngineStatus::Success);
    EXPECT_EQ(sum, 1070);
    EXPECT_EQ(count, 11);
    EXPECT_EQ(events, Flag + Quality);
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
        EXPECT_EQ(events, Flag);
    }
}

TEST_F(GetVadQuality, FailuresAreLoggedAndAFailedQualityCountsAsAFrameOfQualityZeroKept)
{
    for (const uint32_t status : {7U, EngineStatus::BufferTooSmall, EngineStatus::NothingLeft})
    {
        SCOPED_TRACE(status);
        Open();
        engine.laterStep.vadFlag = 1;
        engine.Answer("VWoVGetIntOutput", 1, status);
        sum = 0;
        count = 10;
        EXPECT_EQ(Get(), EngineStatus::Success) << "the status of the second call";
        EXPECT_EQ(sum, 100) << "whatever the flag";
        EXPECT_EQ(count, 11);
        EXPECT_EQ(TakeEvents(), Flag + WrapperLines::NoVadOutput(status) + Quality);

        engine.Answer("VWoVGetIntOutput", 1, 8);
        engine.Answer("VWoVGetIntOutput", 2, status);
        EXPECT_EQ(Get(), status);
        EXPECT_EQ(sum, 100);
        EXPECT_EQ(count, 12);
        EXPECT_EQ(events, Flag + WrapperLines::NoVadOutput(8) + Quality + WrapperLines::NoVadOutput(status));
    }
}

TEST_F(GetVadQuality, CountOfTheFirstReadIsTheRoomOfTheSecondKept)
{
    engine.breach = EngineBreach::CountZeroed;
    EXPECT_EQ(Get(), EngineStatus::Success);
    EXPECT_EQ(sum, 1000) << "there was no room for the quality";
    EXPECT_EQ(count, 11);
    EXPECT_EQ(events, Flag + "VWoVGetIntOutput(1, 6, buffer, 0)");
}

TEST_F(GetVadQuality, ExceptionAtAnyPointLeavesTheSums)
{
    // The flag, its line, the quality, its line.
    for (std::size_t n = 1; n <= 4; ++n)
    {
        SCOPED_TRACE(n);
        Open();
        engine.Answer("VWoVGetIntOutput", 1, 7);
        engine.Answer("VWoVGetIntOutput", 2, 7);
        throwingEvent = n;
        EXPECT_THROW(Get(), std::runtime_error);
        EXPECT_EQ(sum, 1000);
        EXPECT_EQ(count, 10);
    }
}

} // namespace GetVadQualityTests

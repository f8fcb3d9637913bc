#include "library/wovwrapper/VeloxWovWrapper.h"

#include "library/wovwrapper/VeloxWovSDK.h"
#include "tests/library/wovwrapper/Lines.h"
#include "tests/support/PrivateAccess.h"
#include "tests/support/Table.h"
#include "tests/support/WrapperTest.h"

#include <gmock/gmock.h>

#include <limits>

namespace VeloxWovWrapperTests
{

using namespace WrapperLines;
using testing::ElementsAre;
using testing::IsEmpty;

/// The failures' opaque status; those that the wrapper finds itself have its own.
constexpr uint32_t Refused = 7;

const LogLine SizeFailed = LogWithCode(2, 1, "[GetAudioFrameSize] Failed to get size of audio frame.", Refused);
const LogLine SizeUnexpected = Log(2, 1, "[GetAudioFrameSize] Unexpected behavior of SDK API.");
const LogLine SizeNegative = Log(2, 1, "[GetAudioFrameSize] Audio frame size is negative value.");

struct ProbeFailure
{
    const char* description;
    const char* function; ///< null: the engine breaks its contract instead
    uint64_t call;
    EngineBreach breach;
    LogLine line;
    std::size_t calls; ///< of the probe, up to the failure
};

class VeloxWovWrapper : public WrapperTest, public testing::WithParamInterface<ProbeFailure>
{
protected:
    void ScriptFailure()
    {
        engine.breach = GetParam().breach;
        if (GetParam().function != nullptr)
        {
            engine.Answer(GetParam().function, GetParam().call, Refused);
        }
    }

    static uint32_t FailureStatus()
    {
        return GetParam().function == nullptr ? UnexpectedBehaviour : Refused;
    }

    static bool ProbeExists()
    {
        return GetParam().calls > 1;
    }
};

TEST_F(VeloxWovWrapper, BeginsWithFramesOf150SamplesAndAsksNothing)
{
    EXPECT_EQ(PrivateAccess::AudioFrameSize(wrapper), 150);
    EXPECT_THAT(events, IsEmpty());
}

TEST_F(VeloxWovWrapper, KeepsItsMembersInOrder)
{
    EXPECT_THAT(PrivateAccess::WrapperFieldOffsets(wrapper), ElementsAre(8, 16, 32, 40, 48, 48 + sizeof(std::string)));
}

TEST_F(VeloxWovWrapper, DestructionAsksNothing)
{
    {
        const ::VeloxWovWrapper other(&parameters, detection, &logger, 3, "a text that is too long for the string object itself");
    }
    EXPECT_THAT(events, IsEmpty());
}

TEST_F(VeloxWovWrapper, TakesTheFrameSizeFromAProbeWithoutAttributes)
{
    engine.frameSize = 480;
    EXPECT_EQ(wrapper.Initialize(), S_OK);
    EXPECT_EQ(PrivateAccess::AudioFrameSize(wrapper), 480);
    EXPECT_EQ(events, Probe(1));
}

TEST_F(VeloxWovWrapper, AcceptsAnyFrameSizeThatIsNotNegative)
{
    for (const int32_t size : {0, 1, 160, std::numeric_limits<int32_t>::max()})
    {
        SCOPED_TRACE(size);
        engine.frameSize = size;
        int32_t frameSize = 4711;
        EXPECT_EQ(wrapper.GetAudioFrameSize(&frameSize), EngineStatus::Success);
        EXPECT_EQ(frameSize, size);
    }
}

TEST_F(VeloxWovWrapper, RefusesEveryNegativeFrameSize)
{
    for (const int32_t size : {-1, -150, std::numeric_limits<int32_t>::min()})
    {
        SCOPED_TRACE(size);
        Restart();
        engine.frameSize = size;
        int32_t frameSize = 4711;
        EXPECT_EQ(wrapper.GetAudioFrameSize(&frameSize), UnexpectedBehaviour);
        EXPECT_EQ(frameSize, 4711);
        EXPECT_THAT(logger.lines, ElementsAre(SizeNegative));
    }
}

TEST_F(VeloxWovWrapper, FailedDestroyOfTheProbePassesUnseen)
{
    engine.Answer("VWoVDestroySession", 1, 7);
    engine.frameSize = 480;
    EXPECT_EQ(wrapper.Initialize(), S_OK);
    EXPECT_EQ(PrivateAccess::AudioFrameSize(wrapper), 480);
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_F(VeloxWovWrapper, ProbeWithHandleZeroIsDestroyedAsItIs)
{
    engine.breach = EngineBreach::ZeroHandle;
    EXPECT_EQ(wrapper.Initialize(), S_OK);
    EXPECT_EQ(events, Probe(0));
}

TEST_F(VeloxWovWrapper, SecondQueryKeepsTheFrameSizeWhenItFails)
{
    UseFrameSize(480);
    engine.breach = EngineBreach::TwoFrameSizes;
    EXPECT_EQ(wrapper.Initialize(), E_FAIL);
    EXPECT_EQ(PrivateAccess::AudioFrameSize(wrapper), 480);
}

TEST_F(VeloxWovWrapper, ExceptionAnywhereInASuccessfulProbeDestroysIt)
{
    // Creation, two reads, destruction.
    for (std::size_t n = 1; n <= 4; ++n)
    {
        SCOPED_TRACE(n);
        Restart();
        throwingEvent = n;
        EXPECT_THROW(wrapper.Initialize(), std::runtime_error);
        EXPECT_THAT(engine.openSessions, IsEmpty());
        EXPECT_EQ(engine.Destroys(1), n == 1 ? 0 : 1);
    }
}

TEST_P(VeloxWovWrapper, FailureGivesTheStatusAndLeavesTheFrameSize)
{
    ScriptFailure();
    int32_t frameSize = 4711;
    EXPECT_EQ(wrapper.GetAudioFrameSize(&frameSize), FailureStatus());
    EXPECT_EQ(frameSize, 4711);
    EXPECT_THAT(logger.lines, ElementsAre(GetParam().line));
}

TEST_P(VeloxWovWrapper, FailureIsLoggedBeforeTheProbeIsDestroyedAndFramesOf150SamplesAreKept)
{
    ScriptFailure();
    EXPECT_EQ(wrapper.Initialize(), E_FAIL);
    Lines expected = Probe(1);
    expected.resize(GetParam().calls);
    EXPECT_EQ(events, expected + GetParam().line + (ProbeExists() ? Lines(Destroy(1)) : Lines()) +
                          LogWithCode(1, 0, "[Initialization] Getting frame audio size failed", FailureStatus()));
    EXPECT_EQ(PrivateAccess::AudioFrameSize(wrapper), 150);
}

TEST_P(VeloxWovWrapper, ExceptionAtAnyPointOfAFailureDestroysTheProbe)
{
    ScriptFailure();
    ASSERT_EQ(wrapper.Initialize(), E_FAIL);
    const std::size_t eventCount = events.size();
    for (std::size_t n = 1; n <= eventCount; ++n)
    {
        SCOPED_TRACE(n);
        Restart();
        ScriptFailure();
        throwingEvent = n;
        EXPECT_THROW(wrapper.Initialize(), std::runtime_error);
        EXPECT_THAT(engine.openSessions, IsEmpty());
        EXPECT_EQ(engine.Destroys(1), ProbeExists() && n > 1 ? 1 : 0);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Failures, VeloxWovWrapper,
    testing::Values(ProbeFailure{"no session", "VWoVInitSession", 1, EngineBreach::None, NotOpened("initialize session", Refused),
                                 1},
                    ProbeFailure{"number of values refused", "VWoVGetIntOutput", 1, EngineBreach::None, SizeFailed, 2},
                    ProbeFailure{"value refused", "VWoVGetIntOutput", 2, EngineBreach::None, SizeFailed, 3},
                    ProbeFailure{"no value", nullptr, 0, EngineBreach::NoFrameSize, SizeUnexpected, 2},
                    ProbeFailure{"two values", nullptr, 0, EngineBreach::TwoFrameSizes, SizeUnexpected, 2},
                    ProbeFailure{"negative value", nullptr, 0, EngineBreach::NegativeFrameSize, SizeNegative, 3}),
    RowName());

} // namespace VeloxWovWrapperTests

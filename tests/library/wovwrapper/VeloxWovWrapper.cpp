#include "library/wovwrapper/VeloxWovWrapper.h"

#include "library/wovwrapper/VeloxWovSDK.h"
#include "tests/support/PrivateAccess.h"
#include "tests/support/WrapperTest.h"

#include <gmock/gmock.h>

#include <limits>

// The suite is named like the class, which stands outside of this namespace.
namespace WrapperObject
{
namespace
{

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

constexpr const char* ProbeFailed = "[InitializeSession] Failed to initialize session.";
constexpr const char* SizeFailed = "[GetAudioFrameSize] Failed to get size of audio frame.";
constexpr const char* SizeUnexpected = "[GetAudioFrameSize] Unexpected behavior of SDK API.";
constexpr const char* SizeNegative = "[GetAudioFrameSize] Audio frame size is negative value.";
constexpr const char* InitializationFailed = "[Initialization] Getting frame audio size failed";

struct ProbeFailure
{
    const char* description;
    const char* function; ///< null: the engine breaks its contract instead
    uint64_t call;
    EngineBreach breach;
    LogLine line;
    std::vector<std::string> events; ///< all up to the destruction
};

void PrintTo(const ProbeFailure& failure, std::ostream* out)
{
    *out << failure.description;
}

/// The failures' opaque status; those that the wrapper finds itself have its own.
constexpr uint32_t Refused = 7;

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
        return GetParam().function == nullptr ? 11U : Refused;
    }

    static bool ProbeExists()
    {
        return GetParam().line.text != ProbeFailed;
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
    EXPECT_THAT(events, ElementsAre("VWoVInitSession()", "VWoVGetIntOutput(1, 5, null, 0)", "VWoVGetIntOutput(1, 5, buffer, 1)",
                                    "VWoVDestroySession(1)"));
    EXPECT_THAT(logger.lines, IsEmpty());
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
        EXPECT_EQ(wrapper.GetAudioFrameSize(&frameSize), 11U);
        EXPECT_EQ(frameSize, 4711);
        EXPECT_THAT(logger.lines, ElementsAre(Log(2, 1, SizeNegative)));
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
    EXPECT_THAT(events, ElementsAre("VWoVInitSession()", "VWoVGetIntOutput(0, 5, null, 0)", "VWoVGetIntOutput(0, 5, buffer, 1)",
                                    "VWoVDestroySession(0)"));
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

TEST_P(VeloxWovWrapper, FailureIsLoggedBeforeTheProbeIsDestroyed)
{
    ScriptFailure();
    EXPECT_EQ(wrapper.Initialize(), E_FAIL);
    std::vector<std::string> expected = GetParam().events;
    expected.push_back(GetParam().line.text);
    if (ProbeExists())
    {
        expected.emplace_back("VWoVDestroySession(1)");
    }
    expected.emplace_back(InitializationFailed);
    EXPECT_THAT(events, ElementsAreArray(expected));
}

TEST_P(VeloxWovWrapper, FailureMakesInitializeFailAndKeepsFramesOf150Samples)
{
    ScriptFailure();
    EXPECT_EQ(wrapper.Initialize(), E_FAIL);
    EXPECT_THAT(logger.lines, ElementsAre(GetParam().line, LogWithCode(1, 0, InitializationFailed, FailureStatus())));
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
    testing::Values(ProbeFailure{"no session",
                                 "VWoVInitSession",
                                 1,
                                 EngineBreach::None,
                                 LogWithCode(1, 1, ProbeFailed, Refused),
                                 {"VWoVInitSession()"}},
                    ProbeFailure{"number of values refused",
                                 "VWoVGetIntOutput",
                                 1,
                                 EngineBreach::None,
                                 LogWithCode(2, 1, SizeFailed, Refused),
                                 {"VWoVInitSession()", "VWoVGetIntOutput(1, 5, null, 0)"}},
                    ProbeFailure{"value refused",
                                 "VWoVGetIntOutput",
                                 2,
                                 EngineBreach::None,
                                 LogWithCode(2, 1, SizeFailed, Refused),
                                 {"VWoVInitSession()", "VWoVGetIntOutput(1, 5, null, 0)", "VWoVGetIntOutput(1, 5, buffer, 1)"}},
                    ProbeFailure{"no value",
                                 nullptr,
                                 0,
                                 EngineBreach::NoFrameSize,
                                 Log(2, 1, SizeUnexpected),
                                 {"VWoVInitSession()", "VWoVGetIntOutput(1, 5, null, 0)"}},
                    ProbeFailure{"two values",
                                 nullptr,
                                 0,
                                 EngineBreach::TwoFrameSizes,
                                 Log(2, 1, SizeUnexpected),
                                 {"VWoVInitSession()", "VWoVGetIntOutput(1, 5, null, 0)"}},
                    ProbeFailure{"negative value",
                                 nullptr,
                                 0,
                                 EngineBreach::NegativeFrameSize,
                                 Log(2, 1, SizeNegative),
                                 {"VWoVInitSession()", "VWoVGetIntOutput(1, 5, null, 0)", "VWoVGetIntOutput(1, 5, buffer, 1)"}}));

} // namespace
} // namespace WrapperObject

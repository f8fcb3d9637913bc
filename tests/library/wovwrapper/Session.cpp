#include "library/wovwrapper/VeloxWovSDK.h"
#include "tests/support/WrapperTest.h"

#include <gmock/gmock.h>

#include <limits>

namespace
{

using testing::Contains;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

struct OpeningFailure
{
    const char* function;
    uint64_t call;
    std::size_t engineCalls; ///< up to and with the failing one
    const char* line;
    uint32_t session;
};

class Session : public WrapperTest, public testing::WithParamInterface<OpeningFailure>
{
protected:
    uint32_t session = 0;
};

TEST_F(Session, IsConfiguredFromTheMembersAndOpened)
{
    EXPECT_EQ(wrapper.InitializeSession(&session), EngineStatus::Success);
    EXPECT_EQ(session, 1U);
    EXPECT_THAT(engine.openSessions, ElementsAre(1U));
    EXPECT_THAT(events, ElementsAre("[InitializeSession] Entry.", R"(VWoVSetAttribute(19, "memory=160k"))",
                                    R"(VWoVSetAttribute(13, "3"))", R"(VWoVSetBinAttribute(1, "acoustic"))",
                                    R"(VWoVSetBinAttribute(2, "znorm po"))", "VWoVInitSession()", "VWoVInit(1, 2)",
                                    "VWoVInit(1, 4)", "[InitializeSession] Exit. Status: 0"));
    EXPECT_THAT(logger.lines,
                ElementsAre(Log(4, 1, "[InitializeSession] Entry."), Log(4, 1, "[InitializeSession] Exit. Status: 0")));
}

TEST_F(Session, HandsTheModelBlocksOverUncopied)
{
    ASSERT_EQ(wrapper.InitializeSession(&session), EngineStatus::Success);
    EXPECT_EQ(engine.calls.at(2).blob, parameters.acousticModel);
    EXPECT_EQ(engine.calls.at(3).blob, parameters.znormPopulation);
}

TEST_F(Session, MissingModelBlocksReachTheEngineAsNull)
{
    EnrollmentParameters none;
    OpenWovWrapper bare(&none, detection, &logger, 3, "");
    EXPECT_EQ(bare.InitializeSession(&session), EngineStatus::Success);
    EXPECT_THAT(engine.Take(), Contains("VWoVSetBinAttribute(1, null)"));
    EXPECT_THAT(events, Contains("VWoVSetBinAttribute(2, null)"));
}

TEST_F(Session, LogLevelReachesTheEngineAsDecimalText)
{
    constexpr int32_t Least = std::numeric_limits<int32_t>::min();
    constexpr int32_t Most = std::numeric_limits<int32_t>::max();
    for (const auto& [level, text] :
         {std::pair{0, "0"}, {6, "6"}, {-1, "-1"}, {10, "10"}, {Least, "-2147483648"}, {Most, "2147483647"}})
    {
        SCOPED_TRACE(text);
        OpenWovWrapper other(&parameters, detection, &logger, level, "");
        EXPECT_EQ(other.InitializeSession(&session), EngineStatus::Success);
        EXPECT_EQ(engine.Take().at(1), "VWoVSetAttribute(13, \"" + std::string(text) + "\")");
    }
}

TEST_F(Session, ConstraintsReachTheEngineUnchanged)
{
    for (const std::string& constraints : {std::string(), std::string(" a=1;b=\xC3\xA4 "), std::string(70000, 'x')})
    {
        SCOPED_TRACE(constraints.size());
        OpenWovWrapper other(&parameters, detection, &logger, 3, constraints);
        EXPECT_EQ(other.InitializeSession(&session), EngineStatus::Success);
        EXPECT_EQ(engine.Take().at(0), "VWoVSetAttribute(19, \"" + constraints + "\")");
    }
}

TEST_F(Session, EverySessionIsConfiguredAnew)
{
    ASSERT_EQ(wrapper.InitializeSession(&session), EngineStatus::Success);
    const std::vector<std::string> first = TakeEvents();
    wrapper.CloseSession(&session);
    TakeEvents();

    session = 0;
    EXPECT_EQ(wrapper.InitializeSession(&session), EngineStatus::Success);
    EXPECT_EQ(session, 2U);
    std::vector<std::string> second = first;
    second[6] = "VWoVInit(2, 2)";
    second[7] = "VWoVInit(2, 4)";
    EXPECT_THAT(events, ElementsAreArray(second));
}

TEST_P(Session, FailureEndsTheSequenceWithTheEnginesStatus)
{
    const std::vector<std::string> sequence = {R"(VWoVSetAttribute(19, "memory=160k"))",
                                               R"(VWoVSetAttribute(13, "3"))",
                                               R"(VWoVSetBinAttribute(1, "acoustic"))",
                                               R"(VWoVSetBinAttribute(2, "znorm po"))",
                                               "VWoVInitSession()",
                                               "VWoVInit(1, 2)",
                                               "VWoVInit(1, 4)"};
    const OpeningFailure& failure = GetParam();
    // None of the statuses that mean something elsewhere means it here.
    for (const uint32_t status : {7U, EngineStatus::BufferTooSmall, UnexpectedBehaviour, EngineStatus::NothingLeft})
    {
        SCOPED_TRACE(status);
        Restart();
        session = 0;
        engine.Answer(failure.function, failure.call, status);

        EXPECT_EQ(wrapper.InitializeSession(&session), status);
        EXPECT_EQ(session, failure.session);
        std::vector<std::string> expected(sequence.begin(), sequence.begin() + static_cast<std::ptrdiff_t>(failure.engineCalls));
        expected.insert(expected.begin(), "[InitializeSession] Entry.");
        expected.emplace_back(failure.line);
        EXPECT_THAT(events, ElementsAreArray(expected));
        EXPECT_THAT(logger.lines, ElementsAre(Log(4, 1, "[InitializeSession] Entry."), LogWithCode(1, 1, failure.line, status)));
    }
}

TEST_P(Session, FailureLeavesToCloseSessionWhatWasOpened)
{
    engine.Answer(GetParam().function, GetParam().call, 7);
    ASSERT_EQ(wrapper.InitializeSession(&session), 7U);
    EXPECT_EQ(engine.Destroys(session), 0);

    wrapper.CloseSession(&session);
    EXPECT_EQ(engine.Destroys(session), session == 0 ? 0 : 1);
    EXPECT_THAT(engine.openSessions, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Failures, Session,
    testing::Values(
        OpeningFailure{"VWoVSetAttribute", 1, 1, "[InitializeSession] Failed to set attribute - firmware constraints.", 0},
        OpeningFailure{"VWoVSetAttribute", 2, 2, "[InitializeSession] Failed to set attribute - log level.", 0},
        OpeningFailure{"VWoVSetBinAttribute", 1, 3, "[InitializeSession] Failed to set attribute - acoustic model.", 0},
        OpeningFailure{"VWoVSetBinAttribute", 2, 4, "[InitializeSession] Failed to set attribute - ZNorm population.", 0},
        OpeningFailure{"VWoVInitSession", 1, 5, "[InitializeSession] Failed to initialize session.", 0},
        OpeningFailure{"VWoVInit", 1, 6, "[InitializeSession] Failed to initialize VAD.", 1},
        OpeningFailure{"VWoVInit", 2, 7, "[InitializeSession] Failed to initialize KPD.", 1}));

TEST_F(Session, HandleZeroOfAnEngineThatSucceedsIsUsedButNotClosed)
{
    engine.breach = EngineBreach::ZeroHandle;
    EXPECT_EQ(wrapper.InitializeSession(&session), EngineStatus::Success);
    EXPECT_THAT(events, Contains("VWoVInit(0, 4)"));
    TakeEvents();

    wrapper.CloseSession(&session);
    EXPECT_THAT(events, IsEmpty());
}

TEST_F(Session, ClosingLogsAndDestroysAndKeepsTheHandle)
{
    ASSERT_EQ(wrapper.InitializeSession(&session), EngineStatus::Success);
    TakeEvents();
    logger.Take();

    wrapper.CloseSession(&session);
    EXPECT_EQ(session, 1U);
    EXPECT_THAT(events, ElementsAre("[CloseSession] Entry.", "VWoVDestroySession(1)"));
    EXPECT_THAT(logger.lines, ElementsAre(Log(4, 1, "[CloseSession] Entry.")));
}

TEST_F(Session, ClosingTwiceDestroysTwice)
{
    ASSERT_EQ(wrapper.InitializeSession(&session), EngineStatus::Success);
    wrapper.CloseSession(&session);
    wrapper.CloseSession(&session);
    EXPECT_EQ(engine.Destroys(1), 2);
}

TEST_F(Session, ClosingHandleZeroDoesNothing)
{
    wrapper.CloseSession(&session);
    EXPECT_THAT(events, IsEmpty());
    EXPECT_EQ(session, 0U);
}

TEST_F(Session, DestroyThatFailsPassesUnseen)
{
    ASSERT_EQ(wrapper.InitializeSession(&session), EngineStatus::Success);
    TakeEvents();
    engine.Answer("VWoVDestroySession", 1, 7);
    wrapper.CloseSession(&session);
    EXPECT_THAT(events, ElementsAre("[CloseSession] Entry.", "VWoVDestroySession(1)"));
}

TEST_F(Session, ExceptionLeavesTheHandleToTheCaller)
{
    // Entry, four attributes, creation, two components, exit.
    for (std::size_t n = 1; n <= 9; ++n)
    {
        SCOPED_TRACE(n);
        Restart();
        session = 0;
        throwingEvent = n;
        EXPECT_THROW(wrapper.InitializeSession(&session), std::runtime_error);
        EXPECT_EQ(events.size(), n);
        EXPECT_EQ(session, n <= 6 ? 0U : 1U);
        EXPECT_EQ(engine.Destroys(1), 0);
    }
}

} // namespace

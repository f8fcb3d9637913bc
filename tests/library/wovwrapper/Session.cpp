#include "library/wovwrapper/VeloxWovSDK.h"
#include "tests/library/wovwrapper/Lines.h"
#include "tests/support/WrapperTest.h"

#include <gmock/gmock.h>

#include <limits>

namespace SessionTests
{

using namespace WrapperLines;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class Session : public WrapperTest
{
protected:
    uint32_t session = 0;
};

TEST_F(Session, IsConfiguredFromTheMembersAndOpened)
{
    EXPECT_EQ(wrapper.InitializeSession(&session), EngineStatus::Success);
    EXPECT_EQ(session, 1U);
    EXPECT_THAT(engine.openSessions, ElementsAre(1U));
    EXPECT_EQ(TakeEvents(), Opening(1));

    wrapper.CloseSession(&session);
    EXPECT_EQ(session, 1U) << "the handle is kept";
    EXPECT_EQ(TakeEvents(), Closing(1));

    session = 0;
    EXPECT_EQ(wrapper.InitializeSession(&session), EngineStatus::Success);
    EXPECT_EQ(events, Opening(2)) << "every session is configured anew";
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

TEST_F(Session, RefusalEndsTheSequenceWithTheEnginesStatusAndLeavesToCloseSessionWhatWasOpened)
{
    std::size_t length = 1;
    for (const OpeningStep& step : OpeningSteps)
    {
        SCOPED_TRACE(step.name);
        ++length;
        // None of the statuses that mean something elsewhere means it here.
        for (const uint32_t status : {7U, EngineStatus::BufferTooSmall, UnexpectedBehaviour, EngineStatus::NothingLeft})
        {
            SCOPED_TRACE(status);
            Restart();
            session = 0;
            engine.Answer(step.function, step.call, status);
            EXPECT_EQ(wrapper.InitializeSession(&session), status);
            EXPECT_EQ(session, step.opened ? 1U : 0U);
            Lines expected = Opening(1);
            expected.resize(length);
            EXPECT_EQ(TakeEvents(), expected + NotOpened(step.name, status));

            wrapper.CloseSession(&session);
            EXPECT_EQ(events, step.opened ? Closing(1) : Lines());
            EXPECT_THAT(engine.openSessions, IsEmpty());
        }
    }
}

TEST_F(Session, HandleZeroOfAnEngineThatSucceedsIsUsedButNotClosed)
{
    engine.breach = EngineBreach::ZeroHandle;
    EXPECT_EQ(wrapper.InitializeSession(&session), EngineStatus::Success);
    EXPECT_THAT(events, Contains("VWoVInit(0, 4)"));
    TakeEvents();

    wrapper.CloseSession(&session);
    EXPECT_THAT(events, IsEmpty());
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
    EXPECT_EQ(events, Closing(1));
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

} // namespace SessionTests

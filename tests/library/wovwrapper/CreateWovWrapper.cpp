#include "IVeloxWovWrapper.h"
#include "tests/library/wovwrapper/Lines.h"
#include "tests/support/WrapperTest.h"

#include <gmock/gmock.h>

namespace CreateWovWrapperTests
{

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

class CreateWovWrapper : public WrapperTest
{
protected:
    auto Create()
    {
        return KeywordDetectorAdapterImplementation::CreateWovWrapper(&parameters, detection, &logger, 3, constraints);
    }

    /// Whether a verification of 100 samples detects.
    bool Verify(KeywordDetectorAdapterImplementation::IVeloxWovWrapper& created)
    {
        ScriptedRecording recording(std::vector<float>(100));
        bool detected = false;
        EXPECT_EQ(created.VerifyKeyword(&recording, 0, &detected), S_OK);
        return detected;
    }

    std::string constraints = "memory=160k";
};

TEST_F(CreateWovWrapper, AsksTheEngineForItsFrameSize)
{
    const auto created = Create();
    ASSERT_NE(created, nullptr);
    EXPECT_EQ(events, WrapperLines::Probe(1));
}

TEST_F(CreateWovWrapper, WrapperFeedsFramesOfTheEnginesSize)
{
    engine.frameSize = 480;
    const auto created = Create();
    Verify(*created);
    EXPECT_THAT(events, Contains("VWoVFeedAudioFrame(2, 480)"));
}

TEST_F(CreateWovWrapper, FailedQuestionStillGivesAWrapperWithFramesOf150Samples)
{
    for (const EngineBreach breach : {EngineBreach::NoFrameSize, EngineBreach::TwoFrameSizes, EngineBreach::NegativeFrameSize})
    {
        SCOPED_TRACE(static_cast<int>(breach));
        Restart();
        engine.frameSize = 480;
        engine.breach = breach;
        const auto created = Create();
        ASSERT_NE(created, nullptr);
        EXPECT_THAT(logger.lines, Contains(LogWithCode(1, 0, "[Initialization] Getting frame audio size failed", 11)));

        Verify(*created);
        EXPECT_THAT(events, Contains("VWoVFeedAudioFrame(2, 150)"));
    }
}

TEST_F(CreateWovWrapper, EngineThatOpensNoSessionStillGivesAWrapper)
{
    engine.Answer("VWoVInitSession", 1, 7);
    EXPECT_NE(Create(), nullptr);
    EXPECT_THAT(logger.lines, ElementsAre(WrapperLines::NotOpened("initialize session", 7),
                                          LogWithCode(1, 0, "[Initialization] Getting frame audio size failed", 7)));
}

TEST_F(CreateWovWrapper, ConstraintsAndThresholdsAreCopied)
{
    constraints = "a text that is too long for the string object itself";
    const std::string given = constraints;
    engine.laterStep.scores = {11};
    engine.scoreCount = 1;
    const auto created = Create();
    constraints.assign("changed");
    detection = {1000000, 1000000, 1000000};

    EXPECT_TRUE(Verify(*created));
    EXPECT_THAT(events, Contains("VWoVSetAttribute(19, \"" + given + "\")"));
}

TEST_F(CreateWovWrapper, ModelBlocksAreReadWhenASessionIsOpened)
{
    const auto created = Create();
    EXPECT_THAT(events, Not(Contains(testing::Field(&LogLine::text, testing::HasSubstr("VWoVSetBinAttribute")))));
    delete[] std::exchange(parameters.acousticModel, nullptr);

    Verify(*created);
    EXPECT_THAT(events, Contains("VWoVSetBinAttribute(1, null)"));
}

TEST_F(CreateWovWrapper, SessionsOfTwoWrappersAreNotShared)
{
    const auto first = Create();
    const auto second = Create();
    Verify(*first);
    Verify(*second);
    EXPECT_EQ(engine.sessionsCreated, 4U);
    EXPECT_THAT(engine.openSessions, IsEmpty());
}

TEST_F(CreateWovWrapper, ReleasingTheWrapperAsksNothing)
{
    auto created = Create();
    TakeEvents();
    created.reset();
    EXPECT_THAT(events, IsEmpty());
}

TEST_F(CreateWovWrapper, ExceptionAtAnyPointReachesTheCallerAndDestroysTheProbe)
{
    // Creation; a refused read, its line, destruction; the factory's own line.
    for (std::size_t n = 1; n <= 5; ++n)
    {
        SCOPED_TRACE(n);
        Restart();
        engine.Answer("VWoVGetIntOutput", 1, 7);
        throwingEvent = n;
        EXPECT_THROW(Create(), std::runtime_error);
        EXPECT_THAT(events, SizeIs(n == 2 || n == 3 ? n + 1 : n));
        EXPECT_THAT(engine.openSessions, IsEmpty());
        EXPECT_EQ(engine.Destroys(1), n == 1 ? 0 : 1);
    }
}

TEST_F(CreateWovWrapper, ExceptionOfAnyTypeReachesTheCallerUnchanged)
{
    engine.onCall = [](const EngineCall&) {
        throw 4711;
    };
    try
    {
        Create();
        FAIL() << "the exception did not pass";
    }
    catch (int thrown)
    {
        EXPECT_EQ(thrown, 4711);
    }
}

} // namespace CreateWovWrapperTests

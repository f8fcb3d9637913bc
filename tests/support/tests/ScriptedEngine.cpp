#include "tests/scripted-engine/ScriptedEngine.h"

#include "library/wovwrapper/VeloxWovSDK.h"

#include <gmock/gmock.h>

#include <array>
#include <cstring>
#include <stdexcept>

namespace ScriptedEngineTests
{

using testing::ElementsAre;
using testing::IsEmpty;

const uint8_t* Blob(const char* text)
{
    return static_cast<const uint8_t*>(static_cast<const void*>(text));
}

/// The engine, with nothing called and nothing scripted.
ScriptedEngine& FreshEngine()
{
    GetScriptedEngine().Reset();
    return GetScriptedEngine();
}

uint32_t OpenSession()
{
    uint32_t session = 4711;
    EXPECT_EQ(VWoVInitSession(&session), EngineStatus::Success);
    return session;
}

void Feed(uint32_t session)
{
    const std::array<int16_t, 2> frame{};
    EXPECT_EQ(VWoVFeedAudioFrame(session, frame.data(), 2), EngineStatus::Success);
}

/// What a read of one integer output gives; 4711: nothing was written.
int32_t Output(uint32_t session, uint32_t outputId)
{
    int32_t value = 4711;
    uint32_t count = 1;
    EXPECT_EQ(VWoVGetIntOutput(session, outputId, &value, &count), EngineStatus::Success);
    return value;
}

TEST(ScriptedEngine, KeepsEveryFunctionWithItsArguments)
{
    ScriptedEngine& engine = FreshEngine();
    std::array<float, 2> scores{};
    std::array<uint8_t, 64> buffer{};
    std::array<int16_t, 3> frame = {1, -2, 3};
    int32_t value = 0;
    uint32_t zero = 0;
    uint32_t one = 1;
    uint32_t two = 2;
    uint32_t size = buffer.size();
    uint32_t session = 0;
    uint8_t* phraseModel = nullptr;

    VWoVSetAttribute(19, "memory=160k");
    VWoVSetAttribute(13, nullptr);
    VWoVSetBinAttribute(1, Blob("acoustic model"));
    VWoVSetBinAttribute(2, Blob("znorm\n  "));
    VWoVInitSession(&session);
    VWoVInit(session, 2);
    VWoVSetModel(session, nullptr);
    VWoVStartEnrollment(session);
    VWoVStartEnrollmentUtterance(session, 0);
    VWoVFeedAudioFrame(session, frame.data(), 3);
    VWoVFinalizeEnrollmentUtterance(session);
    VWoVFinalizeEnrollment(session, &phraseModel);
    VWoVSetModel(session, phraseModel);
    VWoVGetScores(session, nullptr, &zero);
    zero = 0;
    VWoVGetScores(session, scores.data(), &two);
    VWoVGetIntOutput(session, 5, nullptr, &zero);
    VWoVGetIntOutput(session, 5, &value, &one);
    VWoVFlush(session);
    zero = 0;
    VWoVPrepareLpeData(session, nullptr, &zero);
    EXPECT_EQ(engine.lpeTarget, nullptr);
    VWoVPrepareLpeData(session, buffer.data(), &size);
    EXPECT_EQ(engine.lpeTarget, buffer.data());
    VWoVDestroySession(session);

    EXPECT_THAT(engine.calls.at(9).samples, ElementsAre(1, -2, 3));
    EXPECT_EQ(engine.calls.at(12).blob, phraseModel);
    EXPECT_EQ(engine.calls.at(17).status, EngineStatus::NothingLeft);
    EXPECT_EQ(engine.calls.at(18).function, "VWoVPrepareLpeData");
    EXPECT_THAT(engine.Take(),
                ElementsAre(R"(VWoVSetAttribute(19, "memory=160k"))", "VWoVSetAttribute(13, null)",
                            R"(VWoVSetBinAttribute(1, "acoustic"))", R"(VWoVSetBinAttribute(2, "znorm"))", "VWoVInitSession()",
                            "VWoVInit(1, 2)", "VWoVSetModel(1, null)", "VWoVStartEnrollment(1)",
                            "VWoVStartEnrollmentUtterance(1, 0)", "VWoVFeedAudioFrame(1, 3)",
                            "VWoVFinalizeEnrollmentUtterance(1)", "VWoVFinalizeEnrollment(1)", R"(VWoVSetModel(1, "phrase"))",
                            "VWoVGetScores(1, null, 0)", "VWoVGetScores(1, buffer, 2)", "VWoVGetIntOutput(1, 5, null, 0)",
                            "VWoVGetIntOutput(1, 5, buffer, 1)", "VWoVFlush(1)", "VWoVPrepareLpeData(1, null, 0)",
                            "VWoVPrepareLpeData(1, buffer, 64)", "VWoVDestroySession(1)"));
    EXPECT_THAT(engine.calls, IsEmpty());
}

TEST(ScriptedEngine, CallsNeedNotBeKept)
{
    ScriptedEngine& engine = FreshEngine();
    engine.keepCalls = false;
    std::vector<std::string> seen;
    engine.onCall = [&](const EngineCall& call) {
        seen.push_back(call.text);
    };
    OpenSession();
    EXPECT_THAT(engine.calls, IsEmpty());
    EXPECT_THAT(seen, ElementsAre("VWoVInitSession()"));
    engine.Reset();
}

TEST(ScriptedEngine, AnswersTheNthCallFromNowOnWithTheStatus)
{
    ScriptedEngine& engine = FreshEngine();
    const uint32_t session = OpenSession();
    EXPECT_EQ(VWoVInit(session, 2), EngineStatus::Success);
    engine.Answer("VWoVInit", 2, 7);
    EXPECT_EQ(VWoVInit(session, 2), EngineStatus::Success);
    EXPECT_EQ(VWoVSetModel(session, nullptr), EngineStatus::Success);
    EXPECT_EQ(VWoVInit(session, 2), 7U);
    EXPECT_EQ(VWoVInit(session, 2), EngineStatus::Success);
    EXPECT_EQ(engine.calls.at(4).status, 7U);
}

TEST(ScriptedEngine, CallThatIsToFailDoesNothing)
{
    ScriptedEngine& engine = FreshEngine();
    engine.Answer("VWoVInitSession", 1, 7);
    uint32_t session = 4711;
    EXPECT_EQ(VWoVInitSession(&session), 7U);
    EXPECT_EQ(session, 4711U);
    EXPECT_THAT(engine.openSessions, IsEmpty());
}

TEST(ScriptedEngine, HandlesCountUpAndAreNotReused)
{
    ScriptedEngine& engine = FreshEngine();
    EXPECT_EQ(OpenSession(), 1U);
    EXPECT_EQ(VWoVDestroySession(1), EngineStatus::Success);
    EXPECT_EQ(OpenSession(), 2U);
    EXPECT_EQ(OpenSession(), 3U);
    EXPECT_THAT(engine.openSessions, ElementsAre(2U, 3U));
}

TEST(ScriptedEngine, SecondDestroyIsAcceptedAndCounted)
{
    ScriptedEngine& engine = FreshEngine();
    const uint32_t session = OpenSession();
    EXPECT_EQ(engine.Destroys(session), 0);
    EXPECT_EQ(VWoVDestroySession(session), EngineStatus::Success);
    EXPECT_EQ(VWoVDestroySession(session), EngineStatus::Success);
    EXPECT_EQ(engine.Destroys(session), 2);
}

TEST(ScriptedEngine, DestroyThatFailsOrThrowsDestroysAllTheSame)
{
    ScriptedEngine& engine = FreshEngine();
    engine.Answer("VWoVDestroySession", 1, 7);
    EXPECT_EQ(VWoVDestroySession(OpenSession()), 7U);
    EXPECT_THAT(engine.openSessions, IsEmpty());

    const uint32_t session = OpenSession();
    engine.onCall = [](const EngineCall& call) {
        throw std::runtime_error(call.text);
    };
    EXPECT_THROW(VWoVDestroySession(session), std::runtime_error);
    EXPECT_THAT(engine.openSessions, IsEmpty());
    engine.Reset();
}

TEST(ScriptedEngine, SessionThatIsNotOpenIsRefused)
{
    FreshEngine();
    EXPECT_EQ(VWoVInit(1, 2), ScriptedEngine::UnknownSession);
    VWoVDestroySession(OpenSession());
    EXPECT_EQ(VWoVFlush(1), ScriptedEngine::UnknownSession);
}

TEST(ScriptedEngine, HookSeesACallBeforeItIsAnsweredAndMayThrow)
{
    ScriptedEngine& engine = FreshEngine();
    engine.onCall = [&](const EngineCall& call) {
        EXPECT_THAT(engine.openSessions, IsEmpty());
        EXPECT_EQ(call.status, std::nullopt);
        throw std::runtime_error(call.text);
    };
    uint32_t session = 4711;
    EXPECT_THROW(VWoVInitSession(&session), std::runtime_error);
    EXPECT_EQ(session, 4711U);
    EXPECT_EQ(engine.calls.at(0).status, std::nullopt);
    engine.Reset();
}

TEST(ScriptedEngine, ResetForgetsCallsSessionsAndScript)
{
    ScriptedEngine& engine = FreshEngine();
    engine.frameSize = 480;
    engine.breach = EngineBreach::NullPhraseModel;
    engine.Answer("VWoVInitSession", 2, 7);
    OpenSession();
    engine.Reset();
    EXPECT_EQ(OpenSession(), 1U);
    EXPECT_EQ(OpenSession(), 2U);
    EXPECT_EQ(engine.calls.size(), 2U);
    EXPECT_EQ(Output(1, EngineOutput::FrameSize), 150);
    EXPECT_EQ(engine.breach, EngineBreach::None);
}

TEST(ScriptedEngine, ReportsItsFrameSizeAsOneValue)
{
    ScriptedEngine& engine = FreshEngine();
    engine.frameSize = 480;
    const uint32_t session = OpenSession();
    uint32_t count = 0;
    EXPECT_EQ(VWoVGetIntOutput(session, EngineOutput::FrameSize, nullptr, &count), EngineStatus::Success);
    EXPECT_EQ(count, 1U);
    EXPECT_EQ(Output(session, EngineOutput::FrameSize), 480);
}

TEST(ScriptedEngine, WritesNoMoreOutputsThanThereIsRoomFor)
{
    FreshEngine();
    const uint32_t session = OpenSession();
    int32_t value = 4711;
    uint32_t count = 0;
    EXPECT_EQ(VWoVGetIntOutput(session, EngineOutput::FrameSize, &value, &count), EngineStatus::Success);
    EXPECT_EQ(value, 4711);
    EXPECT_EQ(count, 0U);
}

TEST(ScriptedEngine, StepsBelongToFramesAndFlushStepsInTheirOrder)
{
    ScriptedEngine& engine = FreshEngine();
    engine.steps = {{{1, 2}, 0, 60}, {{3, 4}, 1, 70}, {{5, 6}, 0, -80}};
    engine.laterStep = {{7, 8}, 2, 90};
    engine.flushSteps = 2;
    const uint32_t session = OpenSession();
    const auto expect = [&](const std::vector<float>& expected, int32_t flag, int32_t quality) {
        std::vector<float> scores(2);
        uint32_t count = 2;
        // Reading changes nothing.
        for (int i = 0; i < 2; ++i)
        {
            EXPECT_EQ(VWoVGetScores(session, scores.data(), &count), EngineStatus::Success);
            EXPECT_EQ(count, 2U);
            EXPECT_EQ(scores, expected);
        }
        EXPECT_EQ(Output(session, EngineOutput::VadFlag), flag);
        EXPECT_EQ(Output(session, EngineOutput::VadQuality), quality);
    };

    Feed(session);
    expect({1, 2}, 0, 60);
    engine.Answer("VWoVFeedAudioFrame", 1, 7);
    EXPECT_EQ(VWoVFeedAudioFrame(session, nullptr, 0), 7U);
    expect({1, 2}, 0, 60);
    Feed(session);
    expect({3, 4}, 1, 70);
    EXPECT_EQ(VWoVFlush(session), EngineStatus::Success);
    expect({5, 6}, 0, -80);
    EXPECT_EQ(VWoVFlush(session), EngineStatus::Success);
    expect({7, 8}, 2, 90);
    EXPECT_EQ(VWoVFlush(session), EngineStatus::NothingLeft);
    expect({7, 8}, 2, 90);
}

TEST(ScriptedEngine, FlushStepsAreDueAgainAfterAnotherFrame)
{
    ScriptedEngine& engine = FreshEngine();
    engine.flushSteps = 1;
    const uint32_t session = OpenSession();
    for (int recording = 0; recording < 2; ++recording)
    {
        Feed(session);
        EXPECT_EQ(VWoVFlush(session), EngineStatus::Success);
        EXPECT_EQ(VWoVFlush(session), EngineStatus::NothingLeft);
        EXPECT_EQ(VWoVFlush(session), EngineStatus::NothingLeft);
    }
}

TEST(ScriptedEngine, NumberOfScoresBeforeTheFirstFrameIsScripted)
{
    ScriptedEngine& engine = FreshEngine();
    engine.scoreCount = 3;
    const uint32_t session = OpenSession();
    uint32_t count = 0;
    EXPECT_EQ(VWoVGetScores(session, nullptr, &count), EngineStatus::Success);
    EXPECT_EQ(count, 3U);
}

TEST(ScriptedEngine, ScoresThatDoNotFitAreRefusedWithTheNumberRequired)
{
    ScriptedEngine& engine = FreshEngine();
    engine.laterStep.scores = {1, 2, 3};
    const uint32_t session = OpenSession();
    Feed(session);
    std::array<float, 4> scores = {-1, -1, -1, -1};
    uint32_t count = 2;
    EXPECT_EQ(VWoVGetScores(session, scores.data(), &count), EngineStatus::BufferTooSmall);
    EXPECT_EQ(count, 3U);
    EXPECT_THAT(scores, ElementsAre(-1, -1, -1, -1));
    EXPECT_EQ(VWoVGetScores(session, scores.data(), &count), EngineStatus::Success);
    EXPECT_THAT(scores, ElementsAre(1, 2, 3, -1));
}

TEST(ScriptedEngine, PhraseModelHoldsItsLengthAtOffset8)
{
    ScriptedEngine& engine = FreshEngine();
    engine.phraseModelSize = 0x01020304;
    uint8_t* model = nullptr;
    EXPECT_EQ(VWoVFinalizeEnrollment(OpenSession(), &model), EngineStatus::Success);
    ASSERT_NE(model, nullptr);
    uint32_t size = 0;
    std::memcpy(&size, model + 8, sizeof(size));
    EXPECT_EQ(size, 0x01020304U);
}

/// What the two calls for the firmware model give.
std::string LpeData(uint32_t session, uint32_t* announced, uint32_t* size)
{
    EXPECT_EQ(VWoVPrepareLpeData(session, nullptr, announced), EngineStatus::Success);
    std::string data(*announced, '?');
    *size = *announced;
    EXPECT_EQ(VWoVPrepareLpeData(session, static_cast<uint8_t*>(static_cast<void*>(data.data())), size), EngineStatus::Success);
    return data;
}

TEST(ScriptedEngine, GivesTheFirmwareModelInTwoCalls)
{
    ScriptedEngine& engine = FreshEngine();
    engine.lpeData = "VWOV abc";
    uint32_t announced = 0;
    uint32_t size = 0;
    EXPECT_EQ(LpeData(OpenSession(), &announced, &size), "VWOV abc");
    EXPECT_EQ(size, 8U);
}

TEST(ScriptedEngine, BreachesOfSessionAndFrameSize)
{
    ScriptedEngine& engine = FreshEngine();
    const uint32_t session = OpenSession();
    uint32_t count = 4711;
    engine.breach = EngineBreach::NegativeFrameSize;
    EXPECT_EQ(Output(session, EngineOutput::FrameSize), -1);
    engine.breach = EngineBreach::NoFrameSize;
    EXPECT_EQ(VWoVGetIntOutput(session, EngineOutput::FrameSize, nullptr, &count), EngineStatus::Success);
    EXPECT_EQ(count, 0U);
    engine.breach = EngineBreach::TwoFrameSizes;
    EXPECT_EQ(VWoVGetIntOutput(session, EngineOutput::FrameSize, nullptr, &count), EngineStatus::Success);
    EXPECT_EQ(count, 2U);
    engine.breach = EngineBreach::ZeroHandle;
    EXPECT_EQ(OpenSession(), 0U);
    EXPECT_EQ(VWoVInit(0, 2), EngineStatus::Success);
}

TEST(ScriptedEngine, BreachesOfCounts)
{
    ScriptedEngine& engine = FreshEngine();
    engine.laterStep.scores = {1, 2};
    const uint32_t session = OpenSession();
    Feed(session);
    std::array<float, 3> scores = {-1, -1, -1};
    uint32_t count = 2;
    engine.breach = EngineBreach::ScoreCountBeyondRoom;
    EXPECT_EQ(VWoVGetScores(session, scores.data(), &count), EngineStatus::Success);
    EXPECT_EQ(count, 3U);
    EXPECT_THAT(scores, ElementsAre(1, 2, -1));

    engine.breach = EngineBreach::ScoresNeverFit;
    EXPECT_EQ(VWoVGetScores(session, scores.data(), &count), EngineStatus::BufferTooSmall);
    EXPECT_EQ(count, 2U);

    engine.breach = EngineBreach::CountZeroed;
    EXPECT_EQ(VWoVGetScores(session, scores.data(), &count), EngineStatus::Success);
    EXPECT_EQ(count, 0U);
    int32_t flag = 4711;
    count = 1;
    EXPECT_EQ(VWoVGetIntOutput(session, EngineOutput::VadFlag, &flag, &count), EngineStatus::Success);
    EXPECT_EQ(count, 0U);
    EXPECT_EQ(flag, 0);
}

TEST(ScriptedEngine, BreachesOfModels)
{
    ScriptedEngine& engine = FreshEngine();
    engine.lpeData = "VWOV abc";
    const uint32_t session = OpenSession();
    uint8_t* model = nullptr;
    uint32_t announced = 0;
    uint32_t size = 0;
    engine.breach = EngineBreach::NullPhraseModel;
    EXPECT_EQ(VWoVFinalizeEnrollment(session, &model), EngineStatus::Success);
    EXPECT_EQ(model, nullptr);

    engine.breach = EngineBreach::ShortLpeData;
    EXPECT_EQ(LpeData(session, &announced, &size), "VWOV????");
    EXPECT_EQ(announced, 8U);

    engine.breach = EngineBreach::ChangedLpeSize;
    EXPECT_EQ(LpeData(session, &announced, &size), "VWOV abc");
    EXPECT_EQ(announced, 8U);
    EXPECT_EQ(size, 16U);
}

} // namespace ScriptedEngineTests

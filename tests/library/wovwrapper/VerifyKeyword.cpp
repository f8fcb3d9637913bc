#include "library/wovwrapper/VeloxWovSDK.h"
#include "tests/library/wovwrapper/Lines.h"
#include "tests/support/MediaBuffer.h"
#include "tests/support/VerificationModel.h"
#include "tests/support/WrapperTest.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <random>

namespace VerifyKeywordTests
{

using namespace WrapperLines;
using testing::IsEmpty;

/// The operation's opening: what comes before the setting of the model.
const Lines Opened = VerifyEntry + Opening(1);

class VerifyKeyword : public WrapperTest
{
protected:
    HRESULT Verify(ScriptedRecording& watched, int32_t keywordEndBytePos = 0)
    {
        Watch(watched);
        const HRESULT result = wrapper.VerifyKeyword(&watched, keywordEndBytePos, &detected);
        EXPECT_EQ(watched.OpenLocks(), 0);
        EXPECT_FALSE(watched.unlockedWithoutLock);
        EXPECT_THAT(engine.openSessions, IsEmpty());
        return result;
    }

    HRESULT Verify()
    {
        ScriptedRecording recording(std::vector<float>(100));
        return Verify(recording);
    }

    bool detected = false;
};

TEST_F(VerifyKeyword, OpensScoresAndDestroysTwice)
{
    engine.laterStep.scores = {11};
    EXPECT_EQ(Verify(), S_OK);
    EXPECT_TRUE(detected);
    EXPECT_EQ(events, Detection(1, {}, 100, 1, {"11.000000", "10.000000"}));
    EXPECT_EQ(logger.lines, events.Logged());
}

TEST_F(VerifyKeyword, SuccessDoesNotMeanThatTheKeyPhraseWasFound)
{
    EXPECT_EQ(Verify(), S_OK);
    EXPECT_FALSE(detected);
    EXPECT_EQ(engine.Destroys(1), 2);
}

TEST_F(VerifyKeyword, HandsTheKeyPhraseModelOverUncopied)
{
    EXPECT_EQ(Verify(), S_OK);
    const auto call = std::find_if(engine.calls.begin(), engine.calls.end(),
                                   [](const EngineCall& made) { return made.function == "VWoVSetModel"; });
    ASSERT_NE(call, engine.calls.end());
    EXPECT_EQ(call->blob, parameters.keyphraseModel);
}

TEST_F(VerifyKeyword, KeywordEndIsHandedOn)
{
    ScriptedRecording recording(std::vector<float>(5000));
    EXPECT_EQ(Verify(recording, 1200), S_OK);
    EXPECT_EQ(std::count(events.begin(), events.end(), Frame(1)), 3);
}

TEST_F(VerifyKeyword, VerdictIsNotClearedKept)
{
    detected = true;
    engine.laterStep.scores = {10};
    EXPECT_EQ(Verify(), S_OK);
    EXPECT_TRUE(detected);
}

TEST_F(VerifyKeyword, SessionThatCannotBeOpenedIsASuccessWithTheCallersVerdictKept)
{
    for (const bool before : {false, true})
    {
        for (const OpeningStep& step : OpeningSteps)
        {
            SCOPED_TRACE(step.name);
            Restart();
            detected = before;
            engine.laterStep.scores = {11};
            engine.Answer(step.function, step.call, 7);
            ScriptedRecording recording(std::vector<float>(100));
            EXPECT_EQ(Verify(recording), S_OK);
            EXPECT_EQ(detected, before);
            EXPECT_EQ(recording.locks, 0);
            EXPECT_EQ(engine.Destroys(1), step.opened ? 1 : 0);
            EXPECT_EQ(logger.lines,
                      VerifyEntry + OpenEntry + NotOpened(step.name, 7) + (step.opened ? CloseEntry + VerifyExit : VerifyExit));
        }
    }
}

TEST_F(VerifyKeyword, RefusalDestroysOnceAndWritesNoExitLine)
{
    const auto notFed = [](uint32_t status) {
        return LogWithCode(1, 1, "[VerifyKeyword] Failed to set feed recording to WoV SDK.", status);
    };
    const auto expectRefusal = [this](const Lines& lines, HRESULT lockResult = S_OK) {
        ScriptedRecording recording(std::vector<float>(100));
        recording.lockResult = lockResult;
        EXPECT_EQ(Verify(recording), E_FAIL);
        EXPECT_EQ(events, Verifying(1) + lines + Destroy(1));
        EXPECT_EQ(recording.locks, 0);
        Restart();
    };
    for (const uint32_t status : {7U, EngineStatus::BufferTooSmall, EngineStatus::NothingLeft})
    {
        SCOPED_TRACE(status);
        engine.Answer("VWoVSetModel", 1, status);
        expectRefusal(LogWithCode(1, 1, "[VerifyKeyword] Failed to set keyphrase model.", status));
        engine.Answer("VWoVGetScores", 1, status);
        expectRefusal(Scoring(1) + NoScoreCount(status) + notFed(status));
    }
    expectRefusal(Scoring(1) + "Lock" + NotLocked(E_FAIL) + notFed(UnexpectedBehaviour), E_FAIL);
}

TEST_F(VerifyKeyword, NullRecordingFails)
{
    EXPECT_EQ(wrapper.VerifyKeyword(nullptr, 0, &detected), E_FAIL);
    EXPECT_EQ(engine.Destroys(1), 1);
}

TEST_F(VerifyKeyword, FailuresOfFeedingFlushingAndUnlockingAreNoFailure)
{
    for (const char* function : {"VWoVFeedAudioFrame", "VWoVFlush", "VWoVGetIntOutput"})
    {
        SCOPED_TRACE(function);
        Restart();
        engine.Answer(function, 1, 7);
        EXPECT_EQ(Verify(), S_OK);
        EXPECT_EQ(logger.lines.back(), VerifyExit);
    }
    Restart();
    ScriptedRecording recording(std::vector<float>(100));
    recording.unlockResult = E_FAIL;
    EXPECT_EQ(Verify(recording), S_OK);
}

TEST_F(VerifyKeyword, FailuresOfTheDestructionPassUnseen)
{
    engine.Answer("VWoVDestroySession", 1, 7);
    engine.Answer("VWoVDestroySession", 2, 7);
    EXPECT_EQ(Verify(), S_OK);
    EXPECT_EQ(engine.Destroys(1), 2);
}

TEST_F(VerifyKeyword, HandleZeroIsDestroyedOnceAsItIs)
{
    engine.breach = EngineBreach::ZeroHandle;
    EXPECT_EQ(Verify(), S_OK);
    EXPECT_EQ(engine.Destroys(0), 1);
    EXPECT_EQ(events.back(), VerifyExit);
    EXPECT_EQ(*(events.end() - 2), Destroy(0)) << "closing passes over the handle 0";
}

TEST_F(VerifyKeyword, HostsBufferMayBeVerifiedTwice)
{
    engine.laterStep.scores = {11};
    const MediaBuffer buffer = MakeMediaBuffer(std::vector<float>(1000, 0.5F));
    Lines first;
    for (int i = 0; i < 2; ++i)
    {
        detected = false;
        EXPECT_EQ(wrapper.VerifyKeyword(buffer.get(), 0, &detected), S_OK);
        EXPECT_TRUE(detected);
        first = i == 0 ? logger.lines : first;
        EXPECT_EQ(logger.Take(), first);
    }
}

// Generated verifications, compared with the model.

class Generator
{
public:
    explicit Generator(uint32_t seed) : random(seed)
    {
    }

    VerificationScript Make()
    {
        VerificationScript script;
        script.frameSize = Pick<int32_t>({0, 1, 10, 150, 160, 480});
        script.samples = Below(8) * std::max(1U, static_cast<uint32_t>(script.frameSize)) + Below(3);
        script.keywordEndBytePos = Pick<int32_t>({0, 0, 0, -8, 1, 2, 40, 1200, 4000});
        script.detection = {Pick<int32_t>({2560, 2560, 0, -700, 1}), 1, Pick<int32_t>({0, 50, 50, 1000, -1})};
        script.detectedBefore = Below(10) == 0;
        script.scoreCount = Below(5);
        script.flushSteps = Below(4);
        const float threshold = static_cast<float>(script.detection.preDefinedKpdSensitivity) / 256.0F;
        for (uint32_t i = Below(14); i > 0; --i)
        {
            script.steps.push_back(Step(threshold));
        }
        script.laterStep = Step(threshold);
        for (const auto& [function, most] : {std::pair{"VWoVSetModel", 1U},
                                             {"VWoVGetScores", 14U},
                                             {"VWoVGetIntOutput", 24U},
                                             {"VWoVFeedAudioFrame", 8U},
                                             {"VWoVFlush", 4U},
                                             {"VWoVDestroySession", 2U}})
        {
            for (uint64_t call = 1; call <= most; ++call)
            {
                if (Below(40) == 0)
                {
                    script.answers[{function, call}] =
                        Pick<uint32_t>({7, 11, EngineStatus::BufferTooSmall, EngineStatus::NothingLeft});
                }
            }
        }
        return script;
    }

private:
    uint32_t Below(uint32_t limit)
    {
        return static_cast<uint32_t>(random() % limit);
    }

    template <typename Value>
    Value Pick(const std::vector<Value>& values)
    {
        return values[Below(static_cast<uint32_t>(values.size()))];
    }

    EngineStep Step(float threshold)
    {
        constexpr float Infinity = std::numeric_limits<float>::infinity();
        EngineStep step;
        step.scores.clear();
        for (uint32_t i = Below(5); i > 0; --i)
        {
            step.scores.push_back(
                Below(4) > 0 ? threshold - static_cast<float>(1 + Below(100))
                             : Pick<float>({threshold, std::nextafter(threshold, Infinity), std::nextafter(threshold, -Infinity),
                                            threshold + 1, Infinity, -Infinity, std::numeric_limits<float>::quiet_NaN()}));
        }
        step.vadFlag = Below(3) == 0 ? Pick<int32_t>({1, -1}) : 0;
        step.vadQuality = Pick<int32_t>({0, 49, 50, 51, 100, -20, 2000000000, -2000000000});
        return step;
    }

    std::mt19937 random;
};

TEST_F(VerifyKeyword, GeneratedVerificationsGoAsTheModelDoes)
{
    Generator generator(20240522);
    int found = 0;
    int tooLow = 0;
    int failed = 0;
    for (int i = 0; i < 5000; ++i)
    {
        SCOPED_TRACE(i);
        const VerificationScript script = generator.Make();
        const VerificationOutcome expected = PredictVerification(script);

        detection = script.detection;
        OpenWovWrapper verifying(&parameters, detection, &logger, 3, "memory=160k");
        Restart();
        engine.frameSize = script.frameSize;
        ASSERT_EQ(verifying.Initialize(), S_OK);
        Restart();
        engine.scoreCount = script.scoreCount;
        engine.steps = script.steps;
        engine.laterStep = script.laterStep;
        engine.flushSteps = script.flushSteps;
        for (const auto& [call, status] : script.answers)
        {
            engine.Answer(call.first, call.second, status);
        }
        ScriptedRecording recording(std::vector<float>(script.samples));
        Watch(recording);
        detected = script.detectedBefore;
        ASSERT_EQ(verifying.VerifyKeyword(&recording, script.keywordEndBytePos, &detected), expected.succeeded ? S_OK : E_FAIL);
        ASSERT_EQ(detected, expected.detected);
        ASSERT_EQ(events, Opened + expected.events);
        ASSERT_EQ(recording.OpenLocks(), 0);
        ASSERT_THAT(engine.openSessions, IsEmpty());

        found += expected.detected ? 1 : 0;
        tooLow += std::count(expected.events.begin(), expected.events.end(), QualityTooLow) > 0 ? 1 : 0;
        failed += expected.succeeded ? 0 : 1;
    }
    // The generator reaches every verdict.
    EXPECT_GT(found, 500);
    EXPECT_GT(tooLow, 500);
    EXPECT_GT(failed, 100);
}

// Exceptions.

struct Scenario
{
    const char* description;
    const char* function; ///< whose call is refused; null for none
    uint64_t call;
    HRESULT lockResult;
};

TEST_F(VerifyKeyword, ExceptionAtAnyPointPassesAndDestroysTheOpenSession)
{
    for (const Scenario& scenario : std::vector<Scenario>{{"all goes well", nullptr, 0, S_OK},
                                                          {"model refused", "VWoVSetModel", 1, S_OK},
                                                          {"number of scores refused", "VWoVGetScores", 1, S_OK},
                                                          {"scores refused", "VWoVGetScores", 2, S_OK},
                                                          {"quality refused", "VWoVGetIntOutput", 2, S_OK},
                                                          {"frame refused", "VWoVFeedAudioFrame", 1, S_OK},
                                                          {"flush refused", "VWoVFlush", 1, S_OK},
                                                          {"lock refused", nullptr, 0, E_FAIL}})
    {
        SCOPED_TRACE(scenario.description);
        std::size_t eventCount = 0;
        std::size_t firstDestroy = 0;
        for (std::size_t n = 0; n <= eventCount; ++n)
        {
            SCOPED_TRACE(n);
            Restart();
            engine.laterStep.scores = {11};
            engine.laterStep.vadQuality = 1;
            engine.flushSteps = 1;
            if (scenario.function != nullptr)
            {
                engine.Answer(scenario.function, scenario.call, 7);
            }
            ScriptedRecording recording(std::vector<float>(100));
            recording.lockResult = scenario.lockResult;
            detected = false;
            if (n == 0)
            {
                // Undisturbed, for the number of points.
                wrapper.VerifyKeyword(&recording, 0, &detected);
                eventCount = events.size();
                const auto destroy = std::find(events.begin(), events.end(), Destroy(1));
                ASSERT_NE(destroy, events.end());
                firstDestroy = static_cast<std::size_t>(destroy - events.begin()) + 1;
                continue;
            }
            throwingEvent = n;
            EXPECT_THROW(wrapper.VerifyKeyword(&recording, 0, &detected), std::runtime_error);
            EXPECT_EQ(recording.OpenLocks(), 0);
            EXPECT_FALSE(recording.unlockedWithoutLock);
            // The session is open, and the operation's, when its opening has ended.
            if (n > Opened.size())
            {
                EXPECT_THAT(engine.openSessions, IsEmpty());
            }
            if (n > Opened.size() && n < firstDestroy)
            {
                EXPECT_EQ(engine.Destroys(1), 1) << "by the guard";
            }
        }
    }
}

TEST_F(VerifyKeyword, ExceptionOfAnyTypePassesUnchanged)
{
    engine.onCall = [](const EngineCall& call) {
        if (call.function == "VWoVFlush")
        {
            throw 4711;
        }
    };
    ScriptedRecording recording(std::vector<float>(100));
    try
    {
        wrapper.VerifyKeyword(&recording, 0, &detected);
        FAIL() << "the exception did not pass";
    }
    catch (int thrown)
    {
        EXPECT_EQ(thrown, 4711);
    }
    EXPECT_EQ(recording.OpenLocks(), 0);
    EXPECT_EQ(engine.Destroys(1), 1);
}

TEST_F(VerifyKeyword, SecondExceptionInTheGuardsDestructionDoesNotReplaceTheFirst)
{
    engine.onCall = [](const EngineCall& call) {
        if (call.function == "VWoVFlush" || call.function == "VWoVDestroySession")
        {
            throw std::runtime_error(call.function);
        }
    };
    ScriptedRecording recording(std::vector<float>(100));
    EXPECT_THAT([&] { wrapper.VerifyKeyword(&recording, 0, &detected); },
                testing::ThrowsMessage<std::runtime_error>("VWoVFlush"));
    EXPECT_THAT(engine.openSessions, IsEmpty());
}

} // namespace VerifyKeywordTests

#include "library/wovwrapper/VeloxWovSDK.h"
#include "tests/support/WrapperTest.h"

#include <mferror.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <memory>

namespace
{

using testing::Contains;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::IsSupersetOf;

constexpr uint32_t Untouched = 4711;

const LogLine TrainingFailed = LogWithCode(1, 1, "[TrainModel] Failed to feed recordings.", 7);

/// What a training gave; releases the model as a caller does.
struct Training
{
    Training() = default;
    Training(const Training&) = delete;
    Training& operator=(const Training&) = delete;
    ~Training()
    {
        delete[] model;
    }

    std::string Model() const
    {
        return {model, model + size};
    }

    HRESULT result = S_OK;
    uint8_t* model = nullptr;
    uint32_t size = Untouched;
};

/// How an operation ends after a failure.
enum class Ending
{
    Close,  ///< closing, exit line, another destruction
    Destroy ///< destruction alone
};

struct TrainingFailure
{
    const char* function;
    uint64_t call;
    std::vector<LogLine> lines; ///< from the failure up to the ending
    Ending ending;
};

void PrintTo(const TrainingFailure& failure, std::ostream* out)
{
    *out << failure.function << " " << failure.call;
}

class TrainModel : public WrapperTest, public testing::WithParamInterface<TrainingFailure>
{
protected:
    TrainModel()
    {
        Watch(recording);
    }

    ~TrainModel() override
    {
        EXPECT_EQ(recording.OpenLocks(), 0);
        EXPECT_FALSE(recording.unlockedWithoutLock);
    }

    void Train(Training* training, std::vector<IMFMediaBuffer*> recordings)
    {
        const std::vector<int32_t> positions(recordings.size());
        training->result = wrapper.TrainModel(recordings.data(), static_cast<uint32_t>(recordings.size()), positions.data(),
                                              &training->model, &training->size);
    }

    /// The result of a training whose model nobody looks at.
    HRESULT Train(std::vector<IMFMediaBuffer*> recordings)
    {
        Training training;
        Train(&training, std::move(recordings));
        return training.result;
    }

    HRESULT Train()
    {
        return Train({&recording});
    }

    void ExpectEvents(const std::vector<std::string>& start, std::size_t startLength, const std::vector<LogLine>& lines,
                      const std::vector<std::string>& ending)
    {
        std::vector<std::string> expected(start.begin(), start.begin() + static_cast<std::ptrdiff_t>(startLength));
        for (const LogLine& line : lines)
        {
            expected.push_back(line.text);
        }
        expected.insert(expected.end(), ending.begin(), ending.end());
        EXPECT_THAT(events, ElementsAreArray(expected));
    }

    /// A training with one recording of one frame.
    const std::vector<std::string> successfulEvents{"[InitializeSession] Entry.",
                                                    R"(VWoVSetAttribute(19, "memory=160k"))",
                                                    R"(VWoVSetAttribute(13, "3"))",
                                                    R"(VWoVSetBinAttribute(1, "acoustic"))",
                                                    R"(VWoVSetBinAttribute(2, "znorm po"))",
                                                    "VWoVInitSession()",
                                                    "VWoVInit(1, 2)",
                                                    "VWoVInit(1, 4)",
                                                    "[InitializeSession] Exit. Status: 0",
                                                    "VWoVStartEnrollment(1)",
                                                    "[TrainModel] Starting feeding data to WovSDK",
                                                    "[FeedRecordingsForEnrollment] Entry.",
                                                    "[FeedRecordingsForEnrollment] Recording 1",
                                                    "VWoVStartEnrollmentUtterance(1, 0)",
                                                    "[FeedRecording] Entry.",
                                                    "Lock",
                                                    "[FeedRecording] Starting feeding frames. Samples to feed: 100",
                                                    "VWoVFeedAudioFrame(1, 150)",
                                                    "[FeedRecording] Ended feeding frames",
                                                    "VWoVFlush(1)",
                                                    "Unlock",
                                                    "[FeedRecording] Exit.",
                                                    "VWoVFinalizeEnrollmentUtterance(1)",
                                                    "[FeedRecordingsForEnrollment] Recording 1 was sent",
                                                    "[FeedRecordingsForEnrollment] Exit.",
                                                    "VWoVFinalizeEnrollment(1)",
                                                    "[TrainModel] Enrollment finalized.",
                                                    "[TrainModel] Phrase model size: 32.",
                                                    R"(VWoVSetModel(1, "phrase"))",
                                                    "VWoVPrepareLpeData(1, null, 0)",
                                                    "[TrainModel] Created LPE data size: 13.",
                                                    "VWoVPrepareLpeData(1, buffer, 13)",
                                                    "[CloseSession] Entry.",
                                                    "VWoVDestroySession(1)",
                                                    "[TrainModel] Exit.",
                                                    "VWoVDestroySession(1)"};

    const std::vector<std::string> closing{"[CloseSession] Entry.", "VWoVDestroySession(1)", "[TrainModel] Exit.",
                                           "VWoVDestroySession(1)"};

    ScriptedRecording recording{std::vector<float>(100)};
};

TEST_F(TrainModel, GivesTheEnginesLpeData)
{
    Training training;
    Train(&training, {&recording});
    EXPECT_EQ(training.result, S_OK);
    ASSERT_EQ(training.size, 13U);
    EXPECT_EQ(training.Model(), "VWOV lpe data");
}

TEST_F(TrainModel, ClosesTheSessionAndDestroysItOnceMoreKept)
{
    ASSERT_EQ(Train(), S_OK);
    EXPECT_THAT(events, ElementsAreArray(successfulEvents));
    EXPECT_EQ(engine.Destroys(1), 2);
    EXPECT_THAT(engine.openSessions, IsEmpty());
    EXPECT_THAT(
        logger.lines,
        ElementsAre(Log(4, 1, "[InitializeSession] Entry."), Log(4, 1, "[InitializeSession] Exit. Status: 0"),
                    Log(4, 1, "[TrainModel] Starting feeding data to WovSDK"), Log(4, 1, "[FeedRecordingsForEnrollment] Entry."),
                    Log(5, 1, "[FeedRecordingsForEnrollment] Recording 1"), Log(4, 1, "[FeedRecording] Entry."),
                    Log(5, 1, "[FeedRecording] Starting feeding frames. Samples to feed: 100"),
                    Log(5, 1, "[FeedRecording] Ended feeding frames"), Log(4, 1, "[FeedRecording] Exit."),
                    Log(5, 1, "[FeedRecordingsForEnrollment] Recording 1 was sent"),
                    Log(4, 1, "[FeedRecordingsForEnrollment] Exit."), LogWithCode(5, 1, "[TrainModel] Enrollment finalized.", 0),
                    LogFormat(5, 1, "[TrainModel] Phrase model size: 32."),
                    LogFormat(5, 1, "[TrainModel] Created LPE data size: 13."), Log(4, 1, "[CloseSession] Entry."),
                    LogWithCode(4, 1, "[TrainModel] Exit.", 0)));
}

TEST_F(TrainModel, InstallsTheEnginesOwnPhraseModel)
{
    ASSERT_EQ(Train(), S_OK);
    const auto installed = std::find_if(engine.calls.begin(), engine.calls.end(),
                                        [](const EngineCall& call) { return call.function == "VWoVSetModel"; });
    ASSERT_NE(installed, engine.calls.end());
    EXPECT_EQ(installed->blob, engine.phraseModel.data());
}

TEST_F(TrainModel, FeedsFramesOfTheEnginesSize)
{
    UseFrameSize(40);
    ASSERT_EQ(Train(), S_OK);
    EXPECT_EQ(std::count(events.begin(), events.end(), "VWoVFeedAudioFrame(1, 40)"), 3);
}

TEST_F(TrainModel, EveryTrainingOpensASessionOfItsOwn)
{
    ASSERT_EQ(Train(), S_OK);
    ASSERT_EQ(Train(), S_OK);
    EXPECT_EQ(engine.sessionsCreated, 2U);
    EXPECT_EQ(engine.Destroys(2), 2);
    EXPECT_THAT(engine.openSessions, IsEmpty());
}

TEST_F(TrainModel, PhraseModelSizeIsLoggedUnsigned)
{
    engine.phraseModelSize = 0xFFFFFFFF;
    EXPECT_EQ(Train(), S_OK);
    EXPECT_THAT(logger.lines, Contains(LogFormat(5, 1, "[TrainModel] Phrase model size: 4294967295.")));
}

TEST_F(TrainModel, MissingPhraseModelHasTheSizeZeroAndReachesTheEngine)
{
    engine.breach = EngineBreach::NullPhraseModel;
    EXPECT_EQ(Train(), S_OK);
    EXPECT_THAT(logger.lines, Contains(LogFormat(5, 1, "[TrainModel] Phrase model size: 0.")));
    EXPECT_THAT(events, Contains("VWoVSetModel(1, null)"));
}

TEST_F(TrainModel, LpeDataOfSizeZeroIsAnEmptyBlock)
{
    engine.lpeData.clear();
    Training training;
    Train(&training, {&recording});
    EXPECT_EQ(training.result, S_OK);
    EXPECT_NE(training.model, nullptr);
    EXPECT_EQ(training.size, 0U);
    EXPECT_THAT(logger.lines, Contains(LogFormat(5, 1, "[TrainModel] Created LPE data size: 0.")));
    EXPECT_THAT(events, Contains("VWoVPrepareLpeData(1, buffer, 0)"));
}

TEST_F(TrainModel, SizeThatTheSecondCallReportsIsIgnoredKept)
{
    engine.breach = EngineBreach::ChangedLpeSize;
    Training training;
    Train(&training, {&recording});
    EXPECT_EQ(training.result, S_OK);
    ASSERT_EQ(training.size, 13U);
    EXPECT_EQ(training.Model(), "VWOV lpe data");
}

TEST_F(TrainModel, LpeDataThatTheEngineDoesNotWriteReadsAsZeros)
{
    engine.breach = EngineBreach::ShortLpeData;
    Training training;
    Train(&training, {&recording});
    EXPECT_EQ(training.result, S_OK);
    ASSERT_EQ(training.size, 13U);
    EXPECT_EQ(training.Model(), std::string("VWOV l") + std::string(7, '\0'));
}

TEST_F(TrainModel, MagicIsNeitherWrittenNorChecked)
{
    engine.lpeData = "no magic";
    Training training;
    Train(&training, {&recording});
    EXPECT_EQ(training.result, S_OK);
    ASSERT_EQ(training.size, 8U);
    EXPECT_EQ(training.Model(), "no magic");
}

TEST_F(TrainModel, WithoutRecordingsTheEnrollmentIsFinalisedAtOnce)
{
    EXPECT_EQ(Train({}), S_OK);
    const std::vector<std::string> expected{"VWoVStartEnrollment(1)", "[TrainModel] Starting feeding data to WovSDK",
                                            "[FeedRecordingsForEnrollment] Entry.", "[FeedRecordingsForEnrollment] Exit.",
                                            "VWoVFinalizeEnrollment(1)"};
    EXPECT_THAT(std::vector<std::string>(events.begin() + 9, events.begin() + 14), ElementsAreArray(expected));
}

TEST_F(TrainModel, WithoutRecordingsTheResultIsTheEngines)
{
    engine.Answer("VWoVFinalizeEnrollment", 1, 7);
    EXPECT_EQ(Train({}), E_FAIL);
    EXPECT_THAT(logger.lines, Contains(LogWithCode(1, 1, "[TrainModel] Failed to finalize enrollment.", 7)));
}

// Kept.
TEST_F(TrainModel, SecondOfThreeFinalisationsMayFail)
{
    engine.Answer("VWoVFinalizeEnrollmentUtterance", 2, 7);
    Training training;
    Train(&training, {&recording, &recording, &recording});
    EXPECT_EQ(training.result, S_OK);
    ASSERT_EQ(training.size, 13U);
    EXPECT_EQ(recording.locks, 3);
    EXPECT_THAT(logger.lines, Contains(LogWithCode(2, 1, "VWoVFinalizeEnrollmentUtterance failed!", 7)).Times(1));
    EXPECT_THAT(logger.lines, Contains(LogWithCode(5, 1, "[TrainModel] Enrollment finalized.", 0)));
    EXPECT_THAT(logger.lines, Contains(LogWithCode(4, 1, "[TrainModel] Exit.", 0)));
}

TEST_F(TrainModel, RecordingThatCannotBeLockedFailsWithTheWrappersOwnStatus)
{
    ScriptedRecording locked(std::vector<float>(100));
    locked.lockResult = MF_E_INVALIDREQUEST;
    for (IMFMediaBuffer* refused : {static_cast<IMFMediaBuffer*>(&locked), static_cast<IMFMediaBuffer*>(nullptr)})
    {
        SCOPED_TRACE(refused);
        Restart();
        Training training;
        Train(&training, {&recording, refused});
        EXPECT_EQ(training.result, E_FAIL);
        EXPECT_EQ(training.model, nullptr);
        const HRESULT status = refused == nullptr ? E_POINTER : MF_E_INVALIDREQUEST;
        EXPECT_THAT(std::vector<LogLine>(logger.lines.end() - 6, logger.lines.end()),
                    ElementsAre(Log(2, 0, "[FeedRecording] Failed to lock recording. Status = " + std::to_string(status)),
                                LogWithCode(2, 1, "[FeedRecordingsForEnrollment] Failed to feed recording.", 11),
                                Log(4, 1, "[FeedRecordingsForEnrollment] Exit."),
                                LogWithCode(1, 1, "[TrainModel] Failed to feed recordings.", 11),
                                Log(4, 1, "[CloseSession] Entry."), LogWithCode(4, 1, "[TrainModel] Exit.", 11)));
        EXPECT_EQ(engine.Destroys(1), 2);
    }
}

TEST_P(TrainModel, FailureGivesEFailAndEndsInItsWay)
{
    const TrainingFailure& failure = GetParam();
    engine.Answer(failure.function, failure.call, 7);
    EXPECT_EQ(Train(), E_FAIL);

    // The events of a success up to the call that fails.
    std::size_t length = 0;
    for (uint64_t calls = 0; calls < failure.call; ++length)
    {
        calls += successfulEvents[length].starts_with(std::string(failure.function) + "(") ? 1U : 0U;
    }
    const bool closed = failure.ending == Ending::Close;
    ExpectEvents(successfulEvents, length, failure.lines, closed ? closing : std::vector<std::string>{"VWoVDestroySession(1)"});
    EXPECT_THAT(logger.lines, IsSupersetOf(failure.lines));
    EXPECT_THAT(logger.lines, Contains(LogWithCode(4, 1, "[TrainModel] Exit.", 7)).Times(closed ? 1 : 0));
    EXPECT_EQ(engine.Destroys(1), closed ? 2 : 1);
    EXPECT_THAT(engine.openSessions, IsEmpty());
}

TEST_P(TrainModel, FailureBeforeTheBufferLeavesTheOutputsAlone)
{
    const TrainingFailure& failure = GetParam();
    engine.Answer(failure.function, failure.call, 7);
    Training training;
    Train(&training, {&recording});
    if (failure.function == std::string("VWoVPrepareLpeData") && failure.call == 2)
    {
        // Kept: the caller owns the buffer all the same.
        EXPECT_NE(training.model, nullptr);
        EXPECT_EQ(training.size, 13U);
        return;
    }
    EXPECT_EQ(training.model, nullptr);
    EXPECT_EQ(training.size, Untouched);
}

TEST_P(TrainModel, ExceptionAfterAFailureDestroysTheSession)
{
    engine.Answer(GetParam().function, GetParam().call, 7);
    Train();
    const std::vector<std::string> all = TakeEvents();
    // From the failing call's line on.
    const auto failed = std::find(all.begin(), all.end(), GetParam().lines.front().text);
    ASSERT_NE(failed, all.end());
    for (auto n = static_cast<std::size_t>(failed - all.begin()) + 1; n <= all.size(); ++n)
    {
        SCOPED_TRACE(all[n - 1]);
        throwingEvent.reset();
        Restart();
        engine.Answer(GetParam().function, GetParam().call, 7);
        throwingEvent = n;
        EXPECT_THROW(Train(), std::runtime_error);
        EXPECT_THAT(engine.openSessions, IsEmpty());
    }
    throwingEvent.reset();
}

INSTANTIATE_TEST_SUITE_P(
    Failures, TrainModel,
    testing::Values(
        TrainingFailure{
            "VWoVStartEnrollment", 1, {LogWithCode(1, 1, "[TrainModel] Failed to start enrollment.", 7)}, Ending::Close},
        TrainingFailure{
            "VWoVStartEnrollmentUtterance",
            1,
            {LogWithCode(1, 1, "[FeedRecordingsForEnrollment] Failed to start utterance enrollment.", 7), TrainingFailed},
            Ending::Close},
        TrainingFailure{"VWoVFinalizeEnrollmentUtterance",
                        1,
                        {LogWithCode(2, 1, "VWoVFinalizeEnrollmentUtterance failed!", 7),
                         Log(4, 1, "[FeedRecordingsForEnrollment] Exit."), TrainingFailed},
                        Ending::Close},
        TrainingFailure{
            "VWoVFinalizeEnrollment", 1, {LogWithCode(1, 1, "[TrainModel] Failed to finalize enrollment.", 7)}, Ending::Close},
        TrainingFailure{
            "VWoVSetModel", 1, {LogWithCode(1, 1, "[TrainModel] Failed to set keyphrase model.", 7)}, Ending::Destroy},
        TrainingFailure{
            "VWoVPrepareLpeData", 1, {LogWithCode(1, 1, "[TrainModel] Failed to prepare LPE data.", 7)}, Ending::Destroy},
        TrainingFailure{"VWoVPrepareLpeData", 2, {LogWithCode(1, 1, "VWoVPrepareLpeData failed!", 7)}, Ending::Destroy}));

TEST_F(TrainModel, SessionThatCannotBeOpenedEndsTheTrainingAndStaysOpenKept)
{
    struct Case
    {
        const char* function;
        uint64_t call;
        std::size_t events; ///< up to and with the failing call
        std::size_t openSessions;
        const char* line;
    };
    for (const Case& one :
         {Case{"VWoVSetAttribute", 1, 2, 0, "[InitializeSession] Failed to set attribute - firmware constraints."},
          Case{"VWoVSetAttribute", 2, 3, 0, "[InitializeSession] Failed to set attribute - log level."},
          Case{"VWoVSetBinAttribute", 1, 4, 0, "[InitializeSession] Failed to set attribute - acoustic model."},
          Case{"VWoVSetBinAttribute", 2, 5, 0, "[InitializeSession] Failed to set attribute - ZNorm population."},
          Case{"VWoVInitSession", 1, 6, 0, "[InitializeSession] Failed to initialize session."},
          Case{"VWoVInit", 1, 7, 1, "[InitializeSession] Failed to initialize VAD."},
          Case{"VWoVInit", 2, 8, 1, "[InitializeSession] Failed to initialize KPD."}})
    {
        SCOPED_TRACE(one.line);
        Restart();
        engine.Answer(one.function, one.call, 7);
        Training training;
        Train(&training, {&recording});
        EXPECT_EQ(training.result, E_FAIL);
        EXPECT_EQ(training.model, nullptr);
        EXPECT_EQ(training.size, Untouched);
        const std::vector<LogLine> lines{LogWithCode(1, 1, one.line, 7),
                                         LogWithCode(1, 1, "[TrainModel] Failed to initialize session.", 7)};
        ExpectEvents(successfulEvents, one.events, lines, {});
        EXPECT_THAT(logger.lines, ElementsAre(Log(4, 1, "[InitializeSession] Entry."), lines[0], lines[1]));
        EXPECT_THAT(engine.openSessions, testing::SizeIs(one.openSessions));
        EXPECT_EQ(engine.Destroys(1), 0);
    }
}

TEST_F(TrainModel, HandleZeroIsDestroyedButNotClosed)
{
    engine.breach = EngineBreach::ZeroHandle;
    EXPECT_EQ(Train(), S_OK);
    EXPECT_THAT(std::vector<std::string>(events.end() - 3, events.end()),
                ElementsAre("VWoVPrepareLpeData(0, buffer, 13)", "[TrainModel] Exit.", "VWoVDestroySession(0)"));
}

TEST_F(TrainModel, ExceptionAtAnyPointReachesTheCallerUnlocksAndDestroysTheOpenSession)
{
    // The session exists from the seventh event on and is open once the ninth, the line about it, was written.
    constexpr std::size_t Created = 7;
    constexpr std::size_t Open = 10;
    constexpr std::size_t FirstDestruction = 34;
    for (std::size_t n = 1; n <= successfulEvents.size(); ++n)
    {
        SCOPED_TRACE(successfulEvents[n - 1]);
        Restart();
        ScriptedRecording once(std::vector<float>(100));
        Watch(once);
        throwingEvent = n;
        try
        {
            Train({&once});
            ADD_FAILURE() << "no exception";
        }
        catch (const std::runtime_error& thrown)
        {
            EXPECT_EQ(thrown.what(), successfulEvents[n - 1]);
        }
        // Nobody unlocks again when Unlock throws.
        EXPECT_EQ(once.OpenLocks(), successfulEvents[n - 1] == "Unlock" ? 1 : 0);
        EXPECT_FALSE(once.unlockedWithoutLock);
        // While it is being opened the session is nobody's; after the first destruction the guard makes the second.
        EXPECT_EQ(engine.openSessions.size(), Created <= n && n < Open ? 1U : 0U);
        EXPECT_EQ(engine.Destroys(1), n < Open ? 0 : n < FirstDestruction ? 1 : 2);
        throwingEvent.reset();
    }
}

TEST_F(TrainModel, GuardWithstandsAnEngineThatThrowsFromEveryDestruction)
{
    engine.onCall = [](const EngineCall& call) {
        if (call.function == "VWoVFeedAudioFrame" || call.function == "VWoVDestroySession")
        {
            throw std::runtime_error(call.function);
        }
    };
    try
    {
        Train();
        FAIL() << "no exception";
    }
    catch (const std::runtime_error& thrown)
    {
        EXPECT_STREQ(thrown.what(), "VWoVFeedAudioFrame");
    }
    EXPECT_EQ(engine.Destroys(1), 1);
}

TEST_F(TrainModel, ModelStaysWithTheCallerWhenAnExceptionLeaves)
{
    engine.onCall = [](const EngineCall& call) {
        if (call.text == "VWoVPrepareLpeData(1, buffer, 13)")
        {
            throw std::runtime_error("refused");
        }
    };
    IMFMediaBuffer* recordings[]{&recording};
    const int32_t position = 0;
    uint8_t* model = nullptr;
    uint32_t size = 0;
    EXPECT_THROW(wrapper.TrainModel(recordings, 1, &position, &model, &size), std::runtime_error);
    EXPECT_NE(model, nullptr);
    EXPECT_EQ(size, 13U);
    delete[] model;
}

} // namespace

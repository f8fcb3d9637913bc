#include "library/wovwrapper/VeloxWovSDK.h"
#include "tests/library/wovwrapper/Lines.h"
#include "tests/support/Table.h"
#include "tests/support/WrapperTest.h"

#include <mferror.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <memory>

namespace TrainModelTests
{

using namespace WrapperLines;
using testing::Contains;
using testing::IsEmpty;

constexpr uint32_t Untouched = 4711;

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

/// A training whose n-th call of a function is refused.
struct Refusal
{
    const char* description;
    const char* function;
    uint64_t call;
    Lines lines; ///< from the refusal up to the ending
    bool closes; ///< it ends with closing, exit line and another destruction; else with a destruction alone
};

class TrainModel : public WrapperTest, public testing::WithParamInterface<Refusal>
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

    /// What happens up to and with the n-th call of a function.
    Lines UpTo(const std::string& function, uint64_t call) const
    {
        std::size_t length = 0;
        for (uint64_t calls = 0; calls < call; ++length)
        {
            calls += successful[length].text.starts_with(function + "(") ? 1U : 0U;
        }
        return {successful.begin(), successful.begin() + static_cast<std::ptrdiff_t>(length)};
    }

    /// A training with one recording of one frame.
    const Lines successful = WrapperLines::Training(1, {100});

    ScriptedRecording recording{std::vector<float>(100)};
};

TEST_F(TrainModel, GivesTheEnginesLpeDataClosesTheSessionAndDestroysItOnceMoreKept)
{
    Training training;
    Train(&training, {&recording});
    EXPECT_EQ(training.result, S_OK);
    ASSERT_EQ(training.size, 13U);
    EXPECT_EQ(training.Model(), "VWOV lpe data");
    EXPECT_EQ(events, successful);
    EXPECT_EQ(logger.lines, successful.Logged());
    EXPECT_EQ(engine.Destroys(1), 2);
    EXPECT_THAT(engine.openSessions, IsEmpty());
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
    EXPECT_EQ(std::count(events.begin(), events.end(), LogLine("VWoVFeedAudioFrame(1, 40)")), 3);
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
    EXPECT_THAT(logger.lines, Contains(PhraseModelSize(4294967295)));
}

TEST_F(TrainModel, MissingPhraseModelHasTheSizeZeroAndReachesTheEngine)
{
    engine.breach = EngineBreach::NullPhraseModel;
    EXPECT_EQ(Train(), S_OK);
    EXPECT_THAT(events, Contains(PhraseModelSize(0)));
    EXPECT_THAT(events, Contains("VWoVSetModel(1, null)"));
}

TEST_F(TrainModel, ModelIsOfTheSizeThatWasAnnouncedWhateverTheEngineWritesKept)
{
    struct Case
    {
        const char* description;
        std::string lpeData;
        EngineBreach breach;
        std::string model;
    };
    for (const Case& row :
         {Case{"no bytes: an empty block", "", EngineBreach::None, ""},
          Case{"the magic is neither written nor checked", "no magic", EngineBreach::None, "no magic"},
          Case{"the second call's size is ignored", "VWOV lpe data", EngineBreach::ChangedLpeSize, "VWOV lpe data"},
          Case{"what is not written is zero", "VWOV lpe data", EngineBreach::ShortLpeData, "VWOV l" + std::string(7, '\0')}})
    {
        SCOPED_TRACE(row.description);
        Restart();
        engine.lpeData = row.lpeData;
        engine.breach = row.breach;
        Training training;
        Train(&training, {&recording});
        EXPECT_EQ(training.result, S_OK);
        EXPECT_NE(training.model, nullptr);
        ASSERT_EQ(training.size, row.lpeData.size());
        EXPECT_EQ(training.Model(), row.model);
        EXPECT_THAT(events, Contains(LpeDataSize(training.size)));
        EXPECT_THAT(events, Contains(Call("VWoVPrepareLpeData", 1, "buffer, " + std::to_string(training.size))));
    }
}

TEST_F(TrainModel, WithoutRecordingsTheEnrollmentIsFinalisedAtOnceAndItsResultIsTheEngines)
{
    EXPECT_EQ(Train({}), S_OK);
    EXPECT_EQ(events, WrapperLines::Training(1, {}));
    Restart();
    engine.Answer("VWoVFinalizeEnrollment", 1, 7);
    EXPECT_EQ(Train({}), E_FAIL);
    EXPECT_THAT(logger.lines, Contains(NotTrained("finalize enrollment", 7)));
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
    EXPECT_THAT(logger.lines, Contains(LogWithCode(2, 1, UtteranceNotFinalized, 7)).Times(1));
    EXPECT_THAT(logger.lines, Contains(EnrollmentFinalized));
    EXPECT_THAT(logger.lines, Contains(TrainExit(0)));
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
        EXPECT_EQ(Lines(logger.lines.end() - 6, logger.lines.end()),
                  NotLocked(refused == nullptr ? E_POINTER : MF_E_INVALIDREQUEST) +
                      LogWithCode(2, 1, "[FeedRecordingsForEnrollment] Failed to feed recording.", 11) + RecordingsExit +
                      NotTrained("feed recordings", 11) + CloseEntry + TrainExit(11));
        EXPECT_EQ(engine.Destroys(1), 2);
    }
}

TEST_P(TrainModel, RefusalGivesEFailAndEndsInItsWay)
{
    const Refusal& refusal = GetParam();
    engine.Answer(refusal.function, refusal.call, 7);
    Training training;
    Train(&training, {&recording});
    EXPECT_EQ(training.result, E_FAIL);
    EXPECT_EQ(events, UpTo(refusal.function, refusal.call) + refusal.lines +
                          (refusal.closes ? Closing(1) + TrainExit(7) + Destroy(1) : Destroy(1)));
    EXPECT_THAT(engine.openSessions, IsEmpty());
    // Kept: the caller owns a buffer that was allocated all the same.
    const bool allocated = refusal.function == std::string("VWoVPrepareLpeData") && refusal.call == 2;
    EXPECT_EQ(training.model != nullptr, allocated);
    EXPECT_EQ(training.size, allocated ? 13U : Untouched);
}

TEST_P(TrainModel, ExceptionAfterARefusalDestroysTheSession)
{
    engine.Answer(GetParam().function, GetParam().call, 7);
    Train();
    const Lines all = TakeEvents();
    for (std::size_t n = UpTo(GetParam().function, GetParam().call).size() + 1; n <= all.size(); ++n)
    {
        SCOPED_TRACE(all[n - 1]);
        Restart();
        engine.Answer(GetParam().function, GetParam().call, 7);
        throwingEvent = n;
        EXPECT_THROW(Train(), std::runtime_error);
        EXPECT_THAT(engine.openSessions, IsEmpty());
    }
}

INSTANTIATE_TEST_SUITE_P(
    Refusals, TrainModel,
    testing::Values(Refusal{"start", "VWoVStartEnrollment", 1, NotTrained("start enrollment", 7), true},
                    Refusal{"start of an utterance", "VWoVStartEnrollmentUtterance", 1,
                            LogWithCode(1, 1, UtteranceRefused, 7) + NotTrained("feed recordings", 7), true},
                    Refusal{"end of an utterance", "VWoVFinalizeEnrollmentUtterance", 1,
                            LogWithCode(2, 1, UtteranceNotFinalized, 7) + RecordingsExit + NotTrained("feed recordings", 7),
                            true},
                    Refusal{"end", "VWoVFinalizeEnrollment", 1, NotTrained("finalize enrollment", 7), true},
                    Refusal{"phrase model", "VWoVSetModel", 1, NotTrained("set keyphrase model", 7), false},
                    Refusal{"size of the data", "VWoVPrepareLpeData", 1, NotTrained("prepare LPE data", 7), false},
                    Refusal{"data", "VWoVPrepareLpeData", 2, LogWithCode(1, 1, "VWoVPrepareLpeData failed!", 7), false}),
    RowName());

TEST_F(TrainModel, SessionThatCannotBeOpenedEndsTheTrainingAndStaysOpenKept)
{
    for (const OpeningStep& step : OpeningSteps)
    {
        SCOPED_TRACE(step.name);
        Restart();
        engine.Answer(step.function, step.call, 7);
        Training training;
        Train(&training, {&recording});
        EXPECT_EQ(training.result, E_FAIL);
        EXPECT_EQ(training.model, nullptr);
        EXPECT_EQ(training.size, Untouched);
        EXPECT_EQ(events, UpTo(step.function, step.call) + NotOpened(step.name, 7) + NotTrained("initialize session", 7));
        EXPECT_THAT(engine.openSessions, testing::SizeIs(step.opened ? 1 : 0));
    }
}

TEST_F(TrainModel, HandleZeroIsDestroyedButNotClosed)
{
    engine.breach = EngineBreach::ZeroHandle;
    EXPECT_EQ(Train(), S_OK);
    EXPECT_EQ(Lines(events.end() - 3, events.end()), Call("VWoVPrepareLpeData", 0, "buffer, 13") + TrainExit(0) + Destroy(0));
}

TEST_F(TrainModel, ExceptionAtAnyPointReachesTheCallerUnlocksAndDestroysTheOpenSession)
{
    ExpectExceptionsToPass({.all = successful,
                            .session = 1,
                            .lastDestroyGuarded = false,
                            .samples = 100,
                            .prepare = [this] { Restart(); },
                            .operation =
                                [this](IMFMediaBuffer* once) {
                                    return Train({once});
                                }});
}

TEST_F(TrainModel, GuardLeavesHandleZeroAlone)
{
    engine.breach = EngineBreach::ZeroHandle;
    engine.onCall = [](const EngineCall& call) {
        if (call.function == "VWoVStartEnrollment")
        {
            throw std::runtime_error(call.function);
        }
    };
    EXPECT_THROW(Train(), std::runtime_error);
    EXPECT_EQ(engine.Destroys(0), 0);
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

} // namespace TrainModelTests

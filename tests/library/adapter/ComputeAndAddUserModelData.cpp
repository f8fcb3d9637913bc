#include "tests/support/EngineOperationTest.h"
#include "tests/support/PrivateAccess.h"
#include "tests/support/ScriptedStream.h"

#include <mferror.h>

#include <gmock/gmock.h>

#include <algorithm>

namespace
{

using testing::Contains;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

const LogLine Entry = Log(4, 0, "[ComputeAndAddUserModelData] Entry.");
const LogLine NoRecordings = Log(1, 0, "[ComputeAndAddUserModelData] No recordings provided for model computation.");
const LogLine NoStream = Log(1, 0, "[ComputeAndAddUserModelData] Pointer to ModelData is null.");
const LogLine NoPositions = Log(1, 0, "[ComputeAndAddUserModelData] Pointer to keyword end positions is null.");
const LogLine NoWrapper = Log(1, 0, "[ComputeAndAddUserModelData] Failed to create key-phrase recognition instance.");
const LogLine Exit = Log(4, 0, "[ComputeAndAddUserModelData] Exit.");

LogLine NotTrained(HRESULT status)
{
    return LogWithStatus(1, 0, "[ComputeAndAddUserModelData] Failed to train model.", status);
}

LogLine NotWritten(HRESULT status)
{
    return LogWithStatus(1, 0, "[ComputeAndAddUserModelData] Failed to write model to IStream.", status);
}

LogLine InvalidKeyword(const std::string& keywordId, int languageId)
{
    return LogFormat(1, 0,
                     "[ComputeAndAddUserModelData] Validation error, expected keyword ID: 1, actual keyword ID: " + keywordId +
                         ". Language ID: " + std::to_string(languageId) + ".");
}

class ComputeAndAddUserModelData : public EngineOperationTest
{
protected:
    ComputeAndAddUserModelData()
    {
        Watch(recording);
    }

    ~ComputeAndAddUserModelData() override
    {
        EXPECT_EQ(recording.OpenLocks(), 0);
        EXPECT_FALSE(recording.unlockedWithoutLock);
    }

    HRESULT Compute(IStream* target, const std::vector<IMFMediaBuffer*>& recordings, KeywordSelector selector = {1, 1033})
    {
        std::vector<IMFMediaBuffer*> handedOver = recordings;
        const std::vector<int32_t> positions(recordings.size());
        return adapter.ComputeAndAddUserModelData(target, selector, positions.data(), handedOver.data(),
                                                  static_cast<uint32_t>(handedOver.size()));
    }

    HRESULT Compute(IStream* target)
    {
        return Compute(target, {&recording});
    }

    /// A computation from one recording of one frame.
    const std::vector<std::string> successfulEvents{"[ComputeAndAddUserModelData] Entry.",
                                                    "[ComputeAndAddUserModelData] Recordings: 1",
                                                    "[Recording 1] KeywordBytePos: 0",
                                                    "[GetLoggerSeverityLevelFromRegistry] Logger S severity level: 2.",
                                                    "VWoVInitSession()",
                                                    "VWoVGetIntOutput(1, 5, null, 0)",
                                                    "VWoVGetIntOutput(1, 5, buffer, 1)",
                                                    "VWoVDestroySession(1)",
                                                    "[InitializeSession] Entry.",
                                                    R"(VWoVSetAttribute(19, "memory=160k"))",
                                                    R"(VWoVSetAttribute(13, "2"))",
                                                    R"(VWoVSetBinAttribute(1, "am_1033"))",
                                                    R"(VWoVSetBinAttribute(2, "zn_1033"))",
                                                    "VWoVInitSession()",
                                                    "VWoVInit(2, 2)",
                                                    "VWoVInit(2, 4)",
                                                    "[InitializeSession] Exit. Status: 0",
                                                    "VWoVStartEnrollment(2)",
                                                    "[TrainModel] Starting feeding data to WovSDK",
                                                    "[FeedRecordingsForEnrollment] Entry.",
                                                    "[FeedRecordingsForEnrollment] Recording 1",
                                                    "VWoVStartEnrollmentUtterance(2, 0)",
                                                    "[FeedRecording] Entry.",
                                                    "Lock",
                                                    "[FeedRecording] Starting feeding frames. Samples to feed: 100",
                                                    "VWoVFeedAudioFrame(2, 150)",
                                                    "[FeedRecording] Ended feeding frames",
                                                    "VWoVFlush(2)",
                                                    "Unlock",
                                                    "[FeedRecording] Exit.",
                                                    "VWoVFinalizeEnrollmentUtterance(2)",
                                                    "[FeedRecordingsForEnrollment] Recording 1 was sent",
                                                    "[FeedRecordingsForEnrollment] Exit.",
                                                    "VWoVFinalizeEnrollment(2)",
                                                    "[TrainModel] Enrollment finalized.",
                                                    "[TrainModel] Phrase model size: 32.",
                                                    R"(VWoVSetModel(2, "phrase"))",
                                                    "VWoVPrepareLpeData(2, null, 0)",
                                                    "[TrainModel] Created LPE data size: 13.",
                                                    "VWoVPrepareLpeData(2, buffer, 13)",
                                                    "[CloseSession] Entry.",
                                                    "VWoVDestroySession(2)",
                                                    "[TrainModel] Exit.",
                                                    "VWoVDestroySession(2)",
                                                    "[WriteModelToIStream] Entry.",
                                                    "[WriteModelToIStream] Bytes written: 13.",
                                                    "[WriteModelToIStream] Exit.",
                                                    "[ComputeAndAddUserModelData] Exit."};

    ScriptedStream stream{"a former and longer content"};
    ScriptedRecording recording{std::vector<float>(100)};
};

TEST_F(ComputeAndAddUserModelData, TrainsAModelAndStoresIt)
{
    EXPECT_EQ(Compute(&stream), S_OK);
    EXPECT_EQ(stream.Content(), "VWOV lpe data");
    EXPECT_THAT(stream.calls, ElementsAre("SetSize(13)", "Seek(0, SET, no position)", "Write(13)", "Commit(1)"));
    EXPECT_THAT(events, ElementsAreArray(successfulEvents));
    EXPECT_THAT(
        logger.lines,
        ElementsAre(Entry, Log(5, 0, "[ComputeAndAddUserModelData] Recordings: 1"), Log(5, 1, "[Recording 1] KeywordBytePos: 0"),
                    LogFormat(4, 1, "[GetLoggerSeverityLevelFromRegistry] Logger S severity level: 2."),
                    Log(4, 1, "[InitializeSession] Entry."), Log(4, 1, "[InitializeSession] Exit. Status: 0"),
                    Log(4, 1, "[TrainModel] Starting feeding data to WovSDK"), Log(4, 1, "[FeedRecordingsForEnrollment] Entry."),
                    Log(5, 1, "[FeedRecordingsForEnrollment] Recording 1"), Log(4, 1, "[FeedRecording] Entry."),
                    Log(5, 1, "[FeedRecording] Starting feeding frames. Samples to feed: 100"),
                    Log(5, 1, "[FeedRecording] Ended feeding frames"), Log(4, 1, "[FeedRecording] Exit."),
                    Log(5, 1, "[FeedRecordingsForEnrollment] Recording 1 was sent"),
                    Log(4, 1, "[FeedRecordingsForEnrollment] Exit."), LogWithCode(5, 1, "[TrainModel] Enrollment finalized.", 0),
                    LogFormat(5, 1, "[TrainModel] Phrase model size: 32."),
                    LogFormat(5, 1, "[TrainModel] Created LPE data size: 13."), Log(4, 1, "[CloseSession] Entry."),
                    LogWithCode(4, 1, "[TrainModel] Exit.", 0), Log(4, 1, "[WriteModelToIStream] Entry."),
                    LogFormat(5, 1, "[WriteModelToIStream] Bytes written: 13."), Log(4, 1, "[WriteModelToIStream] Exit."), Exit));
}

TEST_F(ComputeAndAddUserModelData, SessionIsClosedAndThenDestroyedKept)
{
    ASSERT_EQ(Compute(&stream), S_OK);
    EXPECT_EQ(engine.Destroys(1), 1) << "the probe";
    EXPECT_EQ(engine.Destroys(2), 2);
    EXPECT_THAT(engine.openSessions, IsEmpty());
}

TEST_F(ComputeAndAddUserModelData, RecordingsAreCountedFromOneAndPositionsAreSigned)
{
    IMFMediaBuffer* recordings[]{&recording, &recording, &recording};
    const int32_t positions[]{1200, 0, -2147483647 - 1};
    EXPECT_EQ(adapter.ComputeAndAddUserModelData(&stream, {1, 1033}, positions, recordings, 3), S_OK);
    EXPECT_THAT(std::vector<LogLine>(logger.lines.begin(), logger.lines.begin() + 5),
                ElementsAre(Entry, Log(5, 0, "[ComputeAndAddUserModelData] Recordings: 3"),
                            Log(5, 1, "[Recording 1] KeywordBytePos: 1200"), Log(5, 1, "[Recording 2] KeywordBytePos: 0"),
                            Log(5, 1, "[Recording 3] KeywordBytePos: -2147483648")));
    EXPECT_EQ(recording.locks, 3);
}

TEST_F(ComputeAndAddUserModelData, EveryRecordingHasItsOwnEndPosition)
{
    ScriptedRecording longOne(std::vector<float>(1000));
    IMFMediaBuffer* recordings[]{&longOne, &longOne};
    const int32_t positions[]{1200, 1};
    EXPECT_EQ(adapter.ComputeAndAddUserModelData(&stream, {1, 1033}, positions, recordings, 2), S_OK);
    EXPECT_EQ(std::count(events.begin(), events.end(), "VWoVFeedAudioFrame(2, 150)"), 3 + 7);
}

TEST_F(ComputeAndAddUserModelData, ChecksRunInTheirOrder)
{
    IMFMediaBuffer* recordings[]{&recording};
    const int32_t position = 0;
    struct Case
    {
        const char* description;
        IStream* stream;
        KeywordSelector selector;
        const int32_t* positions;
        IMFMediaBuffer** recordings;
        uint32_t count;
        LogLine line;
    };
    // Each is followed by all the mistakes that are looked for later.
    for (const Case& one :
         {Case{"no array", nullptr, {2, 1034}, nullptr, nullptr, 1, NoRecordings},
          Case{"no recording", nullptr, {2, 1034}, nullptr, recordings, 0, NoRecordings},
          Case{"keyword 0", nullptr, {0, 1033}, nullptr, recordings, 1, InvalidKeyword("0", 1033)},
          Case{"keyword 2", nullptr, {2, 1034}, nullptr, recordings, 1, InvalidKeyword("2", 1034)},
          Case{"keyword of 32 bits", nullptr, {0xFFFFFFFF, 1033}, nullptr, recordings, 1, InvalidKeyword("-1", 1033)},
          Case{"language not listed", nullptr, {1, 1034}, nullptr, recordings, 1, InvalidKeyword("1", 1034)},
          Case{"no stream", nullptr, {1, 1033}, nullptr, recordings, 1, NoStream},
          Case{"no positions", &stream, {1, 1033}, nullptr, recordings, 1, NoPositions},
          Case{"no stream, all else right", nullptr, {1, 1033}, &position, recordings, 1, NoStream}})
    {
        SCOPED_TRACE(one.description);
        Restart();
        EXPECT_EQ(adapter.ComputeAndAddUserModelData(one.stream, one.selector, one.positions, one.recordings, one.count),
                  E_INVALIDARG);
        EXPECT_THAT(logger.lines, ElementsAre(Entry, one.line));
        EXPECT_THAT(engine.calls, IsEmpty());
        EXPECT_THAT(stream.calls, IsEmpty());
        EXPECT_EQ(recording.locks, 0);
    }
}

TEST_F(ComputeAndAddUserModelData, MissingRecordingsAreReportedBeforeTheConfigurationIsRead)
{
    configuration.WriteXml("");
    EXPECT_EQ(Compute(nullptr, {}), E_INVALIDARG);
    EXPECT_THAT(logger.lines, ElementsAre(Entry, NoRecordings));
}

TEST_F(ComputeAndAddUserModelData, UnreadableConfigurationComesBeforeTheOtherChecks)
{
    configuration.WriteXml("");
    EXPECT_EQ(Compute(nullptr, {&recording}, {2, 1034}), E_FAIL);
    EXPECT_THAT(logger.lines, ElementsAre(Entry,
                                          LogFormat(2, 1,
                                                    "[IsLanguageSupported] Failed to load configuration file: " +
                                                        configuration.Path() + ". Status: XML_ERROR_EMPTY_DOCUMENT."),
                                          Log(1, 0, "[ComputeAndAddUserModelData] Failed to check if language is supported.")));
}

TEST_F(ComputeAndAddUserModelData, InputsThatCannotBeGatheredFail)
{
    struct Case
    {
        std::string file;
        LogLine line;
    };
    const Case cases[]{
        {"kpd_pre_1033.txt", LogWithStatus(1, 0, "[ComputeAndAddUserModelData] Failed to get detection parameters.", E_FAIL)},
        {"zn_1033.bin", LogWithStatus(1, 0, "[ComputeAndAddUserModelData] Failed to get enrollment parameters.", E_FAIL)},
    };
    for (const Case& one : cases)
    {
        SCOPED_TRACE(one.file);
        Restart();
        configuration.RemoveFile(one.file);
        EXPECT_EQ(Compute(&stream), E_FAIL);
        EXPECT_EQ(logger.lines.back(), one.line);
        configuration.WriteFile(one.file, "0.75");
    }
    configuration.ReplaceInXml("constraints.txt", "missing.txt");
    EXPECT_EQ(Compute(&stream), E_FAIL);
    EXPECT_EQ(logger.lines.back(),
              LogWithStatus(1, 0, "[ComputeAndAddUserModelData] Failed to get platform constraints.", E_FAIL));
    EXPECT_THAT(engine.calls, IsEmpty());
    EXPECT_THAT(stream.calls, IsEmpty());
}

TEST_F(ComputeAndAddUserModelData, LogLevelOutOfRangeIsWarnedOfAndThreeIsUsed)
{
    WriteSettingsDword(L"SDKLoggerLevel", 7);
    EXPECT_EQ(Compute(&stream), S_OK);
    EXPECT_THAT(logger.lines, Contains(LogFormat(3, 0,
                                                 "[ComputeAndAddUserModelData] Failed to get SDK logger severity level. "
                                                 "Continuing with log level: 3")));
    EXPECT_THAT(events, Contains(R"(VWoVSetAttribute(13, "3"))"));
}

TEST_F(ComputeAndAddUserModelData, TrainingThatFailsLeavesTheStreamAlone)
{
    for (const auto& [function, call] : {std::pair{"VWoVInit", 2},
                                         {"VWoVStartEnrollment", 1},
                                         {"VWoVStartEnrollmentUtterance", 1},
                                         {"VWoVFinalizeEnrollmentUtterance", 1},
                                         {"VWoVFinalizeEnrollment", 1},
                                         {"VWoVSetModel", 1},
                                         {"VWoVPrepareLpeData", 1},
                                         {"VWoVPrepareLpeData", 2}})
    {
        SCOPED_TRACE(function + std::to_string(call));
        Restart();
        engine.Answer(function, static_cast<uint64_t>(call), 7);
        EXPECT_EQ(Compute(&stream), E_FAIL);
        EXPECT_EQ(logger.lines.back(), NotTrained(E_FAIL));
        EXPECT_THAT(stream.calls, IsEmpty());
    }
}

TEST_F(ComputeAndAddUserModelData, RecordingThatCannotBeLockedFailsTheTraining)
{
    ScriptedRecording locked(std::vector<float>(100));
    locked.lockResult = MF_E_INVALIDREQUEST;
    for (IMFMediaBuffer* refused : {static_cast<IMFMediaBuffer*>(&locked), static_cast<IMFMediaBuffer*>(nullptr)})
    {
        SCOPED_TRACE(refused);
        Restart();
        EXPECT_EQ(Compute(&stream, {&recording, refused, &recording}), E_FAIL);
        const HRESULT status = refused == nullptr ? E_POINTER : MF_E_INVALIDREQUEST;
        EXPECT_THAT(logger.lines,
                    Contains(Log(2, 0, "[FeedRecording] Failed to lock recording. Status = " + std::to_string(status))));
        EXPECT_EQ(logger.lines.back(), NotTrained(E_FAIL));
        EXPECT_THAT(engine.openSessions, IsEmpty());
    }
    EXPECT_EQ(recording.locks, 2) << "the recordings before the refused one";
}

// Kept: the stream and the model of the failed operation are left as they are, and the model is lost.
TEST_F(ComputeAndAddUserModelData, StreamThatCannotBeWrittenFailsWithItsStatusAndLosesTheModelKept)
{
    struct Case
    {
        const char* operation;
        std::string line;
        std::string content;
    };
    for (const Case& one : {Case{"SetSize", "[WriteModelToIStream] Failed to change stream size.", "a former and longer content"},
                            Case{"Seek", "[WriteModelToIStream] Failed to seek to stream begining.", "a former and "},
                            Case{"Write", "[WriteModelToIStream] Failed to write model to IStream.", "a former and "}})
    {
        SCOPED_TRACE(one.operation);
        Restart();
        ScriptedStream refusing("a former and longer content");
        refusing.Answer(one.operation, 1, STG_E_ACCESSDENIED);
        EXPECT_EQ(Compute(&refusing), E_FAIL);
        EXPECT_THAT(logger.lines, Contains(LogWithStatus(2, 1, one.line, STG_E_ACCESSDENIED)));
        EXPECT_EQ(logger.lines.back(), NotWritten(STG_E_ACCESSDENIED));
        EXPECT_EQ(refusing.Content(), one.content);
    }
}

TEST_F(ComputeAndAddUserModelData, RevertThatFailsFailsWithItsStatusAndLosesTheModelKept)
{
    stream.Answer("Commit", 1, STG_E_MEDIUMFULL);
    stream.Answer("Revert", 1, STG_E_REVERTED);
    EXPECT_EQ(Compute(&stream), E_FAIL);
    EXPECT_EQ(logger.lines.back(), NotWritten(STG_E_REVERTED));
}

TEST_F(ComputeAndAddUserModelData, CommitThatIsRevertedAndAShortWriteAreSuccessesKept)
{
    stream.Answer("Commit", 1, STG_E_MEDIUMFULL);
    EXPECT_EQ(Compute(&stream), S_OK);
    EXPECT_EQ(logger.lines.back(), Exit);

    ScriptedStream full;
    full.mostBytes = 5;
    EXPECT_EQ(Compute(&full), S_OK);
    EXPECT_EQ(logger.lines.back(), Exit);
    EXPECT_EQ(full.Content(), std::string("VWOV \0\0\0\0\0\0\0\0", 13));
}

TEST_F(ComputeAndAddUserModelData, ModelOfSizeZeroEmptiesTheStream)
{
    engine.lpeData.clear();
    EXPECT_EQ(Compute(&stream), S_OK);
    EXPECT_EQ(stream.Content(), "");
    EXPECT_THAT(stream.calls, ElementsAre("SetSize(0)", "Seek(0, SET, no position)", "Write(0)", "Commit(1)"));
}

TEST_F(ComputeAndAddUserModelData, MissingPhraseModelIsTheEnginesAffair)
{
    engine.breach = EngineBreach::NullPhraseModel;
    EXPECT_EQ(Compute(&stream), S_OK);
    EXPECT_THAT(events, Contains("VWoVSetModel(2, null)"));
}

TEST_F(ComputeAndAddUserModelData, LargeModelIsStoredUnchanged)
{
    std::string model = "VWOV";
    model.resize(1U << 20);
    for (std::size_t i = 4; i < model.size(); ++i)
    {
        model[i] = static_cast<char>(i * 7 + i / 256);
    }
    engine.lpeData = model;
    EXPECT_EQ(Compute(&stream), S_OK);
    EXPECT_TRUE(stream.Content() == model);
}

TEST_F(ComputeAndAddUserModelData, EveryCallGathersItsInputsAnew)
{
    ASSERT_EQ(Compute(&stream), S_OK);
    configuration.WriteFile("am_1033.bin", "changed");
    WriteSettingsDword(L"SDKLoggerLevel", 5);
    Restart();
    EXPECT_EQ(Compute(&stream), S_OK);
    EXPECT_THAT(events, Contains(R"(VWoVSetAttribute(13, "5"))"));
    EXPECT_THAT(events, Contains(R"(VWoVSetBinAttribute(1, "changed"))"));
}

TEST_F(ComputeAndAddUserModelData, NothingIsScored)
{
    engine.laterStep.scores = {1000};
    EXPECT_EQ(Compute(&stream), S_OK);
    EXPECT_THAT(events, Not(Contains(HasSubstr("VWoVGetScores"))));
}

TEST_F(ComputeAndAddUserModelData, WhatIsArmedStaysArmed)
{
    EXPECT_EQ(Compute(&stream, {&recording}, {1, 1040}), S_OK);
    EXPECT_FALSE(PrivateAccess::UserModelArmed(adapter));
    EXPECT_EQ(PrivateAccess::ArmedLanguageId(adapter), 0);
}

TEST_F(ComputeAndAddUserModelData, ExceptionReachesTheCallerExceptFromTheWrappersCreation)
{
    // The probe: its four calls. The session: created at the 14th event, open once the 17th was written.
    constexpr std::size_t FirstOfProbe = 5;
    constexpr std::size_t LastOfProbe = 8;
    constexpr std::size_t Created = 15;
    constexpr std::size_t Open = 18;
    constexpr std::size_t FirstDestruction = 42;
    for (std::size_t n = 1; n <= successfulEvents.size(); ++n)
    {
        SCOPED_TRACE(successfulEvents[n - 1]);
        Restart();
        ScriptedRecording once(std::vector<float>(100));
        Watch(once);
        ScriptedStream target("a former and longer content");
        throwingEvent = n;
        if (FirstOfProbe <= n && n <= LastOfProbe)
        {
            EXPECT_EQ(Compute(&target, {&once}), E_FAIL);
            EXPECT_EQ(logger.lines.back(), NoWrapper);
        }
        else
        {
            EXPECT_THROW(Compute(&target, {&once}), std::runtime_error);
        }
        // Nobody unlocks again when Unlock throws.
        EXPECT_EQ(once.OpenLocks(), successfulEvents[n - 1] == "Unlock" ? 1 : 0);
        EXPECT_FALSE(once.unlockedWithoutLock);
        // While it is being opened the session is nobody's; after the first destruction the guard makes the second.
        EXPECT_EQ(engine.openSessions.size(), Created <= n && n < Open ? 1U : 0U);
        EXPECT_EQ(engine.Destroys(2), n < Open ? 0 : n < FirstDestruction ? 1 : 2);

        Restart();
        ScriptedStream again("a former and longer content");
        EXPECT_EQ(Compute(&again), S_OK) << "the same adapter goes on";
        EXPECT_THAT(events, ElementsAreArray(successfulEvents));
        EXPECT_EQ(again.Content(), "VWOV lpe data");
    }
}

} // namespace

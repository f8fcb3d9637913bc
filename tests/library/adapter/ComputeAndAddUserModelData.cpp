#include "tests/library/adapter/Lines.h"
#include "tests/support/EngineOperationTest.h"
#include "tests/support/PrivateAccess.h"
#include "tests/support/ScriptedStream.h"

#include <mferror.h>

#include <gmock/gmock.h>

#include <algorithm>

namespace ComputeAndAddUserModelDataTests
{

using namespace RequestLines;
using testing::Contains;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

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

    HRESULT Compute(IStream* target, const std::vector<IMFMediaBuffer*>& recordings, std::vector<int32_t> positions = {},
                    KeywordSelector selector = {1, 1033})
    {
        std::vector<IMFMediaBuffer*> handedOver = recordings;
        positions.resize(recordings.size());
        return adapter.ComputeAndAddUserModelData(target, selector, positions.data(), handedOver.data(),
                                                  static_cast<uint32_t>(handedOver.size()));
    }

    HRESULT Compute(IStream* target)
    {
        return Compute(target, {&recording});
    }

    /// A computation from one recording of one frame.
    const Lines successful =
        ComputeBegun({0}) + Gathered + WrapperLines::Training(2, {100}, Settings) + StreamLines::ModelWritten(13) + ComputeExit;

    ScriptedStream stream{"a former and longer content"};
    ScriptedRecording recording{std::vector<float>(100)};
};

TEST_F(ComputeAndAddUserModelData, TrainsAModelAndStoresIt)
{
    EXPECT_EQ(Compute(&stream), S_OK);
    EXPECT_EQ(stream.Content(), "VWOV lpe data");
    EXPECT_THAT(stream.calls, ElementsAre("SetSize(13)", "Seek(0, SET, no position)", "Write(13)", "Commit(1)"));
    EXPECT_EQ(events, successful);
    EXPECT_EQ(logger.lines, successful.Logged());
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
    EXPECT_EQ(Compute(&stream, {&recording, &recording, &recording}, {1200, 0, -2147483647 - 1}), S_OK);
    logger.lines.resize(5);
    EXPECT_EQ(logger.lines, ComputeBegun({1200, 0, -2147483647 - 1}));
    EXPECT_EQ(recording.locks, 3);
}

TEST_F(ComputeAndAddUserModelData, EveryRecordingHasItsOwnEndPosition)
{
    ScriptedRecording longOne(std::vector<float>(1000));
    EXPECT_EQ(Compute(&stream, {&longOne, &longOne}, {1200, 1}), S_OK);
    EXPECT_EQ(std::count(events.begin(), events.end(), WrapperLines::Frame(2)), 3 + 7);
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
    for (const Case& row :
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
        SCOPED_TRACE(row.description);
        Restart();
        EXPECT_EQ(adapter.ComputeAndAddUserModelData(row.stream, row.selector, row.positions, row.recordings, row.count),
                  E_INVALIDARG);
        EXPECT_EQ(events, ComputeEntry + row.line);
        EXPECT_THAT(stream.calls, IsEmpty());
    }
}

TEST_F(ComputeAndAddUserModelData, ConfigurationIsReadAfterTheLookAtTheRecordingsAndBeforeTheOtherChecks)
{
    configuration.WriteXml("");
    EXPECT_EQ(Compute(nullptr, {}), E_INVALIDARG);
    EXPECT_EQ(TakeEvents(), ComputeEntry + NoRecordings);
    EXPECT_EQ(Compute(nullptr, {&recording}, {}, {2, 1034}), E_FAIL);
    EXPECT_EQ(events, ComputeEntry +
                          ConfigurationLines::NotLoaded("IsLanguageSupported", configuration.Path(), "XML_ERROR_EMPTY_DOCUMENT") +
                          LanguageNotChecked(Computing));
}

TEST_F(ComputeAndAddUserModelData, InputsThatCannotBeGatheredFail)
{
    ExpectInputsToBeNeeded(Computing, [this] {
        stream.calls.clear();
        return Compute(&stream);
    });
    EXPECT_THAT(stream.calls, IsEmpty());
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
        EXPECT_THAT(logger.lines, Contains(WrapperLines::NotLocked(refused == nullptr ? E_POINTER : MF_E_INVALIDREQUEST)));
        EXPECT_EQ(logger.lines.back(), NotTrained(E_FAIL));
        EXPECT_THAT(engine.openSessions, IsEmpty());
    }
    EXPECT_EQ(recording.locks, 2) << "the recordings before the refused one";
}

// Kept: the stream and the model of the failed operation are left as they are, and the model is lost.
TEST_F(ComputeAndAddUserModelData, StreamThatCannotBeWrittenFailsWithItsStatusAndLosesTheModelKept)
{
    const auto compute = [this](const std::vector<std::pair<const char*, HRESULT>>& answers, const std::string& content) {
        Restart();
        ScriptedStream refusing("a former and longer content");
        for (const auto& [operation, result] : answers)
        {
            refusing.Answer(operation, 1, result);
        }
        EXPECT_EQ(Compute(&refusing), E_FAIL);
        EXPECT_EQ(logger.lines.back(), NotWritten(answers.back().second));
        EXPECT_EQ(refusing.Content(), content);
    };
    compute({{"SetSize", STG_E_ACCESSDENIED}}, "a former and longer content");
    compute({{"Seek", STG_E_ACCESSDENIED}}, "a former and ");
    compute({{"Write", STG_E_ACCESSDENIED}}, "a former and ");
    compute({{"Commit", STG_E_MEDIUMFULL}, {"Revert", STG_E_REVERTED}}, "VWOV lpe data");
}

TEST_F(ComputeAndAddUserModelData, CommitThatIsRevertedAndAShortWriteAreSuccessesKept)
{
    stream.Answer("Commit", 1, STG_E_MEDIUMFULL);
    EXPECT_EQ(Compute(&stream), S_OK);
    EXPECT_EQ(logger.lines.back(), ComputeExit);

    ScriptedStream full;
    full.mostBytes = 5;
    EXPECT_EQ(Compute(&full), S_OK);
    EXPECT_EQ(logger.lines.back(), ComputeExit);
    EXPECT_EQ(full.Content(), std::string("VWOV \0\0\0\0\0\0\0\0", 13));
}

TEST_F(ComputeAndAddUserModelData, ModelOfAnySizeIsStoredUnchanged)
{
    std::string large = "VWOV";
    large.resize(1U << 20);
    for (std::size_t i = 4; i < large.size(); ++i)
    {
        large[i] = static_cast<char>(i * 7 + i / 256);
    }
    for (const std::string& model : {std::string(), large})
    {
        SCOPED_TRACE(model.size());
        ScriptedStream target("a former content");
        engine.lpeData = model;
        EXPECT_EQ(Compute(&target), S_OK);
        EXPECT_TRUE(target.Content() == model);
        const std::string size = std::to_string(model.size());
        EXPECT_THAT(target.calls,
                    ElementsAre("SetSize(" + size + ")", "Seek(0, SET, no position)", "Write(" + size + ")", "Commit(1)"));
    }
}

TEST_F(ComputeAndAddUserModelData, MissingPhraseModelIsTheEnginesAffair)
{
    engine.breach = EngineBreach::NullPhraseModel;
    EXPECT_EQ(Compute(&stream), S_OK);
    EXPECT_THAT(events, Contains("VWoVSetModel(2, null)"));
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
    EXPECT_THAT(events, Not(Contains(Field(&LogLine::text, StartsWith("VWoVGetScores")))));
}

TEST_F(ComputeAndAddUserModelData, WhatIsArmedStaysArmed)
{
    EXPECT_EQ(Compute(&stream, {&recording}, {}, {1, 1040}), S_OK);
    EXPECT_FALSE(PrivateAccess::UserModelArmed(adapter));
    EXPECT_EQ(PrivateAccess::ArmedLanguageId(adapter), 0);
}

TEST_F(ComputeAndAddUserModelData, ExceptionReachesTheCallerExceptFromTheWrappersCreation)
{
    ExpectExceptionsToPass({.all = successful,
                            .session = 2,
                            .lastDestroyGuarded = false,
                            .samples = 100,
                            .prepare = [this] { Restart(); },
                            .operation =
                                [this](IMFMediaBuffer* once) {
                                    ScriptedStream target("a former and longer content");
                                    const HRESULT result = Compute(&target, {once});
                                    EXPECT_EQ(target.Content() == "VWOV lpe data", result == S_OK);
                                    return result;
                                }});
}

} // namespace ComputeAndAddUserModelDataTests

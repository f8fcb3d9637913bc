#include "tests/library/adapter/Lines.h"
#include "tests/support/EngineOperationTest.h"
#include "tests/support/PrivateAccess.h"
#include "tests/support/ScriptedStream.h"

#include <mferror.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <limits>

namespace VerifyUserKeywordTests
{

using namespace RequestLines;
using testing::Contains;
using testing::IsEmpty;

class VerifyUserKeyword : public EngineOperationTest
{
protected:
    VerifyUserKeyword()
    {
        Watch(recording);
        ScriptDetection();
    }

    ~VerifyUserKeyword() override
    {
        EXPECT_EQ(recording.OpenLocks(), 0);
        EXPECT_FALSE(recording.unlockedWithoutLock);
    }

    /// The second of the recording's two frames holds the key phrase.
    void ScriptDetection()
    {
        Restart();
        engine.steps = {EngineStep{}, EngineStep{{0.875F}}};
    }

    HRESULT Verify(uint32_t keywordId = 1, uint16_t languageId = 1033)
    {
        return adapter.VerifyUserKeyword(nullptr, keywordId, languageId, 0, &recording);
    }

    /// A verification that finds the key phrase in the second frame.
    const Lines detection = VerifyBegun("1", 1033, 0) + Gathered +
                            WrapperLines::Detection(2, Settings, 200, 2, {"0.875000", "0.750000", "0.009375"}) + Detected;

    ScriptedRecording recording{std::vector<float>(200)};
};

TEST_F(VerifyUserKeyword, DetectionIsASuccess)
{
    EXPECT_EQ(Verify(), S_OK);
    EXPECT_EQ(events, detection);
    EXPECT_EQ(logger.lines, detection.Logged());
}

TEST_F(VerifyUserKeyword, SessionIsDestroyedAndThenClosedKept)
{
    ASSERT_EQ(Verify(), S_OK);
    EXPECT_EQ(engine.Destroys(1), 1) << "the probe";
    EXPECT_EQ(engine.Destroys(2), 2);
    EXPECT_THAT(engine.openSessions, IsEmpty());
}

TEST_F(VerifyUserKeyword, RecordingWithoutTheKeyPhraseFailsWithoutALineOfLevelOne)
{
    engine.steps.clear();
    EXPECT_EQ(Verify(), E_FAIL);
    EXPECT_EQ(logger.lines.back(), NotDetected);
    for (const LogLine& line : logger.lines)
    {
        EXPECT_GT(line.level, 1U) << line;
    }
}

TEST_F(VerifyUserKeyword, DetectionOfTooLowAQualityIsNone)
{
    engine.steps[0].vadQuality = 10;
    engine.steps[1].vadQuality = 9;
    EXPECT_EQ(Verify(), E_FAIL);
    EXPECT_EQ(logger.lines.back(), NotDetected);
}

TEST_F(VerifyUserKeyword, KeywordZeroALanguageNotListedAndNoRecordingAreInvalid)
{
    struct Case
    {
        uint32_t keywordId;
        uint16_t languageId;
        IMFMediaBuffer* recording;
    };
    for (const Case& row : {Case{0, 1033, &recording}, Case{1, 1034, &recording}, Case{1, 0, &recording}, Case{1, 1033, nullptr},
                            Case{0, 0, nullptr}})
    {
        SCOPED_TRACE(row.languageId);
        Restart();
        EXPECT_EQ(adapter.VerifyUserKeyword(nullptr, row.keywordId, row.languageId, 0, row.recording), E_INVALIDARG);
        EXPECT_EQ(events, VerifyBegun(std::to_string(row.keywordId), row.languageId, 0) + VerifyInvalid);
    }
}

// Kept: training and arming insist on keyword 1.
TEST_F(VerifyUserKeyword, AnyKeywordButZeroIsVerified)
{
    for (const auto& [keywordId, text] : {std::pair{2U, "2"}, {0x7FFFFFFFU, "2147483647"}, {0xFFFFFFFFU, "-1"}})
    {
        SCOPED_TRACE(text);
        ScriptDetection();
        EXPECT_EQ(Verify(keywordId), S_OK);
        EXPECT_EQ(logger.lines.at(1), VerifyBegun(text, 1033, 0)[1]);
    }
}

TEST_F(VerifyUserKeyword, UnreadableConfigurationComesBeforeTheValidation)
{
    configuration.WriteXml("");
    EXPECT_EQ(adapter.VerifyUserKeyword(nullptr, 0, 0, 0, nullptr), E_FAIL);
    EXPECT_EQ(events, VerifyBegun("0", 0, 0) +
                          ConfigurationLines::NotLoaded("IsLanguageSupported", configuration.Path(), "XML_ERROR_EMPTY_DOCUMENT") +
                          LanguageNotChecked(Verifying));
}

TEST_F(VerifyUserKeyword, EndPositionIsHandedOnUnchanged)
{
    ScriptedRecording whole(std::vector<float>(1000));
    constexpr int32_t Least = std::numeric_limits<int32_t>::min();
    constexpr int32_t Most = std::numeric_limits<int32_t>::max();
    for (const auto& [position, frames] : {std::pair{1200, 3}, {1, 7}, {-1200, 7}, {Least, 7}, {Most, 7}})
    {
        SCOPED_TRACE(position);
        Restart();
        EXPECT_EQ(adapter.VerifyUserKeyword(nullptr, 1, 1033, position, &whole), E_FAIL);
        EXPECT_EQ(logger.lines.at(1), VerifyBegun("1", 1033, position)[1]);
        EXPECT_EQ(std::count(events.begin(), events.end(), WrapperLines::Frame(2)), frames);
    }
}

TEST_F(VerifyUserKeyword, StreamIsNotRead)
{
    ScriptedStream stream("VWOV user");
    EXPECT_EQ(adapter.VerifyUserKeyword(&stream, 1, 1033, 0, &recording), S_OK);
    EXPECT_THAT(stream.calls, IsEmpty());
}

TEST_F(VerifyUserKeyword, EveryCallGathersItsInputsAnew)
{
    ASSERT_EQ(Verify(), S_OK);
    configuration.WriteFile("kpd_pre_1033.txt", "0.875");
    configuration.WriteFile("am_1033.bin", "changed");
    WriteWholeFile(configuration.ConstraintsPath(), "memory=1k");
    WriteSettingsDword(L"SDKLoggerLevel", 5);
    ScriptDetection();
    EXPECT_EQ(Verify(), E_FAIL) << "a score that equals the threshold is no detection";
    EXPECT_THAT(events, Contains(R"(VWoVSetAttribute(19, "memory=1k"))"));
    EXPECT_THAT(events, Contains(R"(VWoVSetAttribute(13, "5"))"));
    EXPECT_THAT(events, Contains(R"(VWoVSetBinAttribute(1, "changed"))"));
}

TEST_F(VerifyUserKeyword, LanguageHasItsOwnModelsAndThreshold)
{
    EXPECT_EQ(Verify(1, 1040), E_FAIL) << "its threshold is 1.25";
    EXPECT_THAT(events, Contains(R"(VWoVSetModel(2, "kp_1040"))"));
}

TEST_F(VerifyUserKeyword, InputsThatCannotBeGatheredFail)
{
    ExpectInputsToBeNeeded(Verifying, [this] { return Verify(); });
}

TEST_F(VerifyUserKeyword, RefusalsOfTheWrapperFailWithItsStatus)
{
    engine.Answer("VWoVSetModel", 1, 7);
    EXPECT_EQ(Verify(), E_FAIL);
    EXPECT_EQ(logger.lines.back(), NotVerified);
    EXPECT_EQ(engine.Destroys(2), 1);

    ScriptDetection();
    engine.Answer("VWoVGetScores", 1, 7);
    EXPECT_EQ(Verify(), E_FAIL);
    EXPECT_EQ(logger.lines.back(), NotVerified);

    ScriptDetection();
    recording.lockResult = MF_E_INVALIDREQUEST;
    EXPECT_EQ(Verify(), E_FAIL);
    EXPECT_EQ(logger.lines.back(), NotVerified);
    EXPECT_THAT(engine.openSessions, IsEmpty());
}

// Kept: the wrapper reports success, and nothing was detected.
TEST_F(VerifyUserKeyword, SessionThatCannotBeOpenedIsNoDetection)
{
    engine.Answer("VWoVInit", 2, 7);
    EXPECT_EQ(Verify(), E_FAIL);
    EXPECT_EQ(Lines(logger.lines.end() - 4, logger.lines.end()),
              WrapperLines::NotOpened("initialize KPD", 7) + WrapperLines::CloseEntry + WrapperLines::VerifyExit + NotDetected);
    EXPECT_EQ(engine.Destroys(2), 1);
    EXPECT_THAT(engine.openSessions, IsEmpty());
}

TEST_F(VerifyUserKeyword, FrameSizeThatCannotBeHadIsLoggedAndPassedOver)
{
    engine.breach = EngineBreach::TwoFrameSizes;
    EXPECT_EQ(Verify(), S_OK);
    EXPECT_THAT(logger.lines, Contains(LogWithCode(1, 0, "[Initialization] Getting frame audio size failed", 11)));
}

TEST_F(VerifyUserKeyword, WhatIsArmedStaysArmed)
{
    EXPECT_EQ(Verify(1, 1040), E_FAIL);
    EXPECT_FALSE(PrivateAccess::UserModelArmed(adapter));
    EXPECT_EQ(PrivateAccess::ArmedLanguageId(adapter), 0);
}

TEST_F(VerifyUserKeyword, ExceptionReachesTheCallerExceptFromTheWrappersCreation)
{
    ExpectExceptionsToPass({.all = detection,
                            .session = 2,
                            .lastDestroyGuarded = true,
                            .samples = 200,
                            .prepare = [this] { ScriptDetection(); },
                            .operation =
                                [this](IMFMediaBuffer* once) {
                                    return adapter.VerifyUserKeyword(nullptr, 1, 1033, 0, once);
                                }});
}

} // namespace VerifyUserKeywordTests

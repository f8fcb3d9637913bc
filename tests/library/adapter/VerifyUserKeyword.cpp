#include "tests/support/EngineOperationTest.h"
#include "tests/support/PrivateAccess.h"
#include "tests/support/ScriptedStream.h"

#include <mferror.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <limits>

namespace
{

using testing::Contains;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::Not;

const LogLine Entry = Log(4, 0, "[VerifyUserKeyword] Entry.");
const LogLine Invalid = Log(1, 0, "[VerifyUserKeyword] Validation error, one or more of the input parameters is invalid.");
const LogLine NotVerified = LogWithStatus(1, 0, "[VerifyUserKeyword] Failed to verify keyword.", E_FAIL);
const LogLine NoWrapper = Log(1, 0, "[VerifyUserKeyword] Failed to create key-phrase recognition instance.");
const LogLine Detected = LogFormat(4, 0, "[VerifyUserKeyword] Exit. Key-phrase detected: TRUE.");
const LogLine NotDetected = LogFormat(4, 0, "[VerifyUserKeyword] Exit. Key-phrase detected: FALSE.");

LogLine Arguments(const std::string& keywordId, int languageId, int32_t position)
{
    return LogFormat(5, 0,
                     "[VerifyUserKeyword] KeywordId: " + keywordId + ", LangId: " + std::to_string(languageId) +
                         ", KeywordBytePos: " + std::to_string(position) + ".");
}

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
    const std::vector<std::string> detectionEvents{
        "[VerifyUserKeyword] Entry.",
        "[VerifyUserKeyword] KeywordId: 1, LangId: 1033, KeywordBytePos: 0.",
        "[GetLoggerSeverityLevelFromRegistry] Logger S severity level: 2.",
        "VWoVInitSession()",
        "VWoVGetIntOutput(1, 5, null, 0)",
        "VWoVGetIntOutput(1, 5, buffer, 1)",
        "VWoVDestroySession(1)",
        "[VerifyKeyword] Entry.",
        "[InitializeSession] Entry.",
        R"(VWoVSetAttribute(19, "memory=160k"))",
        R"(VWoVSetAttribute(13, "2"))",
        R"(VWoVSetBinAttribute(1, "am_1033"))",
        R"(VWoVSetBinAttribute(2, "zn_1033"))",
        "VWoVInitSession()",
        "VWoVInit(2, 2)",
        "VWoVInit(2, 4)",
        "[InitializeSession] Exit. Status: 0",
        R"(VWoVSetModel(2, "kp_1033"))",
        "[FeedRecording] Entry.",
        "[FeedRecording] Getting Scores size",
        "VWoVGetScores(2, null, 0)",
        "Lock",
        "[FeedRecording] Starting feeding frames. Samples to feed: 200",
        "VWoVFeedAudioFrame(2, 150)",
        "VWoVGetScores(2, buffer, 1)",
        "VWoVGetIntOutput(2, 2, buffer, 1)",
        "VWoVGetIntOutput(2, 6, buffer, 1)",
        "VWoVFeedAudioFrame(2, 150)",
        "VWoVGetScores(2, buffer, 1)",
        "[GetScores] Key phrase detected, KPD score(0.875000), time (0.009375).",
        "VWoVGetIntOutput(2, 2, buffer, 1)",
        "VWoVGetIntOutput(2, 6, buffer, 1)",
        "[FeedRecording] Ended feeding frames",
        "VWoVFlush(2)",
        "[FeedRecording] Best score(0.875000), predefined KPD float threshold (0.750000).",
        "[FeedRecording] Recording quality: 100.",
        "Unlock",
        "[FeedRecording] Exit.",
        "VWoVDestroySession(2)",
        "[CloseSession] Entry.",
        "VWoVDestroySession(2)",
        "[VerifyKeyword] Exit.",
        "[VerifyUserKeyword] Exit. Key-phrase detected: TRUE."};

    ScriptedRecording recording{std::vector<float>(200)};
};

TEST_F(VerifyUserKeyword, DetectionIsASuccess)
{
    EXPECT_EQ(Verify(), S_OK);
    EXPECT_THAT(events, ElementsAreArray(detectionEvents));
    EXPECT_THAT(logger.lines,
                ElementsAre(Entry, Arguments("1", 1033, 0),
                            LogFormat(4, 1, "[GetLoggerSeverityLevelFromRegistry] Logger S severity level: 2."),
                            Log(4, 1, "[VerifyKeyword] Entry."), Log(4, 1, "[InitializeSession] Entry."),
                            Log(4, 1, "[InitializeSession] Exit. Status: 0"), Log(4, 1, "[FeedRecording] Entry."),
                            Log(5, 1, "[FeedRecording] Getting Scores size"),
                            Log(5, 1, "[FeedRecording] Starting feeding frames. Samples to feed: 200"),
                            LogFormat(5, 1, "[GetScores] Key phrase detected, KPD score(0.875000), time (0.009375)."),
                            Log(5, 1, "[FeedRecording] Ended feeding frames"),
                            LogFormat(5, 1, "[FeedRecording] Best score(0.875000), predefined KPD float threshold (0.750000)."),
                            LogFormat(5, 1, "[FeedRecording] Recording quality: 100."), Log(4, 1, "[FeedRecording] Exit."),
                            Log(4, 1, "[CloseSession] Entry."), Log(4, 1, "[VerifyKeyword] Exit."), Detected));
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
    for (const Case& one : {Case{0, 1033, &recording}, Case{1, 1034, &recording}, Case{1, 0, &recording}, Case{1, 1033, nullptr},
                            Case{0, 0, nullptr}})
    {
        SCOPED_TRACE(one.languageId);
        Restart();
        EXPECT_EQ(adapter.VerifyUserKeyword(nullptr, one.keywordId, one.languageId, 0, one.recording), E_INVALIDARG);
        EXPECT_THAT(logger.lines, ElementsAre(Entry, Arguments(std::to_string(one.keywordId), one.languageId, 0), Invalid));
        EXPECT_THAT(engine.calls, IsEmpty());
        EXPECT_EQ(recording.locks, 0);
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
        EXPECT_EQ(logger.lines.at(1), Arguments(text, 1033, 0));
    }
}

TEST_F(VerifyUserKeyword, UnreadableConfigurationComesBeforeTheValidation)
{
    configuration.WriteXml("");
    EXPECT_EQ(adapter.VerifyUserKeyword(nullptr, 0, 0, 0, nullptr), E_FAIL);
    EXPECT_THAT(logger.lines, ElementsAre(Entry, Arguments("0", 0, 0),
                                          LogFormat(2, 1,
                                                    "[IsLanguageSupported] Failed to load configuration file: " +
                                                        configuration.Path() + ". Status: XML_ERROR_EMPTY_DOCUMENT."),
                                          Log(1, 0, "[VerifyUserKeyword] Failed to check if language is supported.")));
}

TEST_F(VerifyUserKeyword, EndPositionIsHandedOnUnchanged)
{
    ScriptedRecording whole(std::vector<float>(1000));
    struct Case
    {
        int32_t position;
        std::ptrdiff_t frames;
    };
    constexpr int32_t Least = std::numeric_limits<int32_t>::min();
    constexpr int32_t Most = std::numeric_limits<int32_t>::max();
    for (const Case& one : {Case{1200, 3}, Case{1, 7}, Case{-1200, 7}, Case{Least, 7}, Case{Most, 7}})
    {
        SCOPED_TRACE(one.position);
        Restart();
        EXPECT_EQ(adapter.VerifyUserKeyword(nullptr, 1, 1033, one.position, &whole), E_FAIL);
        EXPECT_EQ(logger.lines.at(1), Arguments("1", 1033, one.position));
        EXPECT_EQ(std::count(events.begin(), events.end(), "VWoVFeedAudioFrame(2, 150)"), one.frames);
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
    struct Case
    {
        std::string file;
        LogLine line;
    };
    const Case cases[]{
        {"kpd_pre_1033.txt", LogWithStatus(1, 0, "[VerifyUserKeyword] Failed to get detection parameters.", E_FAIL)},
        {"zn_1033.bin", LogWithStatus(1, 0, "[VerifyUserKeyword] Failed to get enrollment parameters.", E_FAIL)},
    };
    for (const Case& one : cases)
    {
        SCOPED_TRACE(one.file);
        Restart();
        configuration.RemoveFile(one.file);
        EXPECT_EQ(Verify(), E_FAIL);
        EXPECT_EQ(logger.lines.back(), one.line);
        EXPECT_THAT(engine.calls, IsEmpty());
        configuration.WriteFile(one.file, "0.75");
    }
    configuration.ReplaceInXml("constraints.txt", "missing.txt");
    EXPECT_EQ(Verify(), E_FAIL);
    EXPECT_EQ(logger.lines.back(), LogWithStatus(1, 0, "[VerifyUserKeyword] Failed to get platform constraints.", E_FAIL));
    EXPECT_THAT(engine.calls, IsEmpty());
}

TEST_F(VerifyUserKeyword, LogLevelOutOfRangeIsWarnedOfAndThreeIsUsed)
{
    WriteSettingsDword(L"SDKLoggerLevel", 7);
    EXPECT_EQ(Verify(), S_OK);
    EXPECT_THAT(
        logger.lines,
        Contains(LogFormat(3, 0, "[VerifyUserKeyword] Failed to get SDK logger severity level. Continuing with log level: 3")));
    EXPECT_THAT(events, Contains(R"(VWoVSetAttribute(13, "3"))"));
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
    EXPECT_THAT(std::vector<LogLine>(logger.lines.end() - 4, logger.lines.end()),
                ElementsAre(LogWithCode(1, 1, "[InitializeSession] Failed to initialize KPD.", 7),
                            Log(4, 1, "[CloseSession] Entry."), Log(4, 1, "[VerifyKeyword] Exit."), NotDetected));
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
    // The probe: its four calls. The session: created at the 14th event, open once the 17th was written, destroyed at the 39th.
    constexpr std::size_t FirstOfProbe = 4;
    constexpr std::size_t LastOfProbe = 7;
    constexpr std::size_t Created = 15;
    constexpr std::size_t Open = 18;
    constexpr std::size_t FirstDestruction = 39;
    constexpr std::size_t Dismissed = 42;
    for (std::size_t n = 1; n <= detectionEvents.size(); ++n)
    {
        SCOPED_TRACE(detectionEvents[n - 1]);
        ScriptDetection();
        ScriptedRecording once(std::vector<float>(200));
        Watch(once);
        throwingEvent = n;
        if (FirstOfProbe <= n && n <= LastOfProbe)
        {
            EXPECT_EQ(adapter.VerifyUserKeyword(nullptr, 1, 1033, 0, &once), E_FAIL);
            EXPECT_EQ(logger.lines.back(), NoWrapper);
            EXPECT_EQ(events.back(), NoWrapper.text);
        }
        else
        {
            EXPECT_THROW(adapter.VerifyUserKeyword(nullptr, 1, 1033, 0, &once), std::runtime_error);
            EXPECT_THAT(events, Not(Contains(NoWrapper.text)));
        }
        EXPECT_EQ(once.OpenLocks(), detectionEvents[n - 1] == "Unlock" ? 1 : 0);
        EXPECT_FALSE(once.unlockedWithoutLock);
        // While it is being opened the session is nobody's.
        EXPECT_EQ(engine.openSessions.size(), Created <= n && n < Open ? 1U : 0U);
        // Until the second destruction is over the guard makes one more.
        const int own = (n >= FirstDestruction ? 1 : 0) + (n >= Dismissed - 1 ? 1 : 0);
        EXPECT_EQ(engine.Destroys(2), n < Open ? 0 : own + (n < Dismissed ? 1 : 0));

        ScriptDetection();
        Watch(recording);
        EXPECT_EQ(Verify(), S_OK) << "the same adapter goes on";
        EXPECT_THAT(events, ElementsAreArray(detectionEvents));
    }
}

} // namespace

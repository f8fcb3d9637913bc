#include "DetectionResult.h"
#include "tests/support/EngineOperationTest.h"
#include "tests/support/HostStream.h"
#include "tests/support/MediaBuffer.h"

#include <objbase.h>

#include <gmock/gmock.h>

#include <array>
#include <cstring>

// The life of a user model: three recordings are verified, a model is trained from them and stored in a stream, the stream arms
// the detector, and what the firmware then reports is the user's.

namespace
{

using testing::ElementsAreArray;

using Lines = std::vector<LogLine>;

constexpr uint16_t Language = 1033;
constexpr uint32_t Recordings = 3;

const LogLine LevelTaken = LogFormat(4, 1, "[GetLoggerSeverityLevelFromRegistry] Logger S severity level: 2.");
const LogLine SessionEntry = Log(4, 1, "[InitializeSession] Entry.");
const LogLine SessionExit = Log(4, 1, "[InitializeSession] Exit. Status: 0");
const LogLine CloseEntry = Log(4, 1, "[CloseSession] Entry.");
const LogLine FeedEntry = Log(4, 1, "[FeedRecording] Entry.");
const LogLine FeedEnd = Log(5, 1, "[FeedRecording] Ended feeding frames");
const LogLine FeedExit = Log(4, 1, "[FeedRecording] Exit.");

LogLine ToFeed(std::size_t samples)
{
    return Log(5, 1, "[FeedRecording] Starting feeding frames. Samples to feed: " + std::to_string(samples));
}

/// A detection in the first frame.
Lines VerificationLines(std::size_t samples, int32_t position)
{
    return {Log(4, 0, "[VerifyUserKeyword] Entry."),
            LogFormat(5, 0, "[VerifyUserKeyword] KeywordId: 1, LangId: 1033, KeywordBytePos: " + std::to_string(position) + "."),
            LevelTaken,
            Log(4, 1, "[VerifyKeyword] Entry."),
            SessionEntry,
            SessionExit,
            FeedEntry,
            Log(5, 1, "[FeedRecording] Getting Scores size"),
            ToFeed(samples),
            LogFormat(5, 1, "[GetScores] Key phrase detected, KPD score(0.875000), time (0.000000)."),
            FeedEnd,
            LogFormat(5, 1, "[FeedRecording] Best score(0.875000), predefined KPD float threshold (0.750000)."),
            LogFormat(5, 1, "[FeedRecording] Recording quality: 100."),
            FeedExit,
            CloseEntry,
            Log(4, 1, "[VerifyKeyword] Exit."),
            LogFormat(4, 0, "[VerifyUserKeyword] Exit. Key-phrase detected: TRUE.")};
}

Lines UtteranceLines(int number, std::size_t samples)
{
    const std::string recording = "[FeedRecordingsForEnrollment] Recording " + std::to_string(number);
    return {Log(5, 1, recording), FeedEntry, ToFeed(samples), FeedEnd, FeedExit, Log(5, 1, recording + " was sent")};
}

Lines ArmingLines(const Lines& model, const std::string& threshold)
{
    Lines lines{Log(4, 0, "[BuildArmingPatternData] Entry."),
                LogFormat(4, 0, "[BuildArmingPatternData] Building package for language: 1033."),
                Log(4, 1, "[CheckIStreamForUserModel] Entry.")};
    lines.insert(lines.end(), model.begin(), model.end());
    lines.push_back(LogFormat(
        5, 0, "[BuildArmingPatternData] Detection parameters: Quality threshold(10), KPD(" + threshold + "), model_size(13)."));
    lines.push_back(Log(4, 0, "[BuildArmingPatternData] Exit, success."));
    return lines;
}

/// A whole pattern for a model of 13 bytes.
std::vector<uint8_t> Pattern(uint8_t threshold, std::string_view model)
{
    std::vector<uint8_t> bytes{0x39,      0x00, 0x00, 0x00,                         // 57 bytes in all
                               0xA0,      0xA1, 0xA2, 0xA3, 0xA4, 0xA5, 0xA6, 0xA7, // detector
                               0xA8,      0xA9, 0xAA, 0xAB, 0xAC, 0xAD, 0xAE, 0xAF, //
                               0x01,      0x00, 0x55, 0xAA,                         // signature
                               threshold, 0x00, 0x00, 0x00, 0xFF, 0xFF, 0xFF, 0x7F, // limit
                               0x00,      0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x0D, 0x00, 0x00, 0x00};
    for (const char byte : model)
    {
        bytes.push_back(static_cast<uint8_t>(byte));
    }
    return bytes;
}

class EndToEnd : public EngineOperationTest
{
protected:
    EndToEnd()
    {
        engine.laterStep.scores = {0.875F};
        for (std::size_t i = 0; i < Recordings; ++i)
        {
            recordings.push_back(MakeMediaBuffer(std::vector<float>(SampleCounts[i], 0.25F)));
        }
    }

    void ExpectLines(const Lines& expected)
    {
        EXPECT_THAT(logger.Take(), ElementsAreArray(expected));
    }

    void Verify()
    {
        for (std::size_t i = 0; i < Recordings; ++i)
        {
            SCOPED_TRACE(i);
            EXPECT_EQ(adapter.VerifyUserKeyword(stream.get(), 1, Language, Positions[i], recordings[i].get()), S_OK);
            ExpectLines(VerificationLines(SampleCounts[i], Positions[i]));
        }
    }

    void Enroll()
    {
        std::vector<IMFMediaBuffer*> handedOver;
        for (const MediaBuffer& recording : recordings)
        {
            handedOver.push_back(recording.get());
        }
        EXPECT_EQ(
            adapter.ComputeAndAddUserModelData(stream.get(), {1, Language}, Positions.data(), handedOver.data(), Recordings),
            S_OK);
        Lines expected{Log(4, 0, "[ComputeAndAddUserModelData] Entry."),
                       Log(5, 0, "[ComputeAndAddUserModelData] Recordings: 3"),
                       Log(5, 1, "[Recording 1] KeywordBytePos: 0"),
                       Log(5, 1, "[Recording 2] KeywordBytePos: 1600"),
                       Log(5, 1, "[Recording 3] KeywordBytePos: -1"),
                       LevelTaken,
                       SessionEntry,
                       SessionExit,
                       Log(4, 1, "[TrainModel] Starting feeding data to WovSDK"),
                       Log(4, 1, "[FeedRecordingsForEnrollment] Entry.")};
        for (std::size_t i = 0; i < Recordings; ++i)
        {
            const Lines utterance = UtteranceLines(static_cast<int>(i) + 1, SampleCounts[i]);
            expected.insert(expected.end(), utterance.begin(), utterance.end());
        }
        const Lines rest{Log(4, 1, "[FeedRecordingsForEnrollment] Exit."),
                         LogWithCode(5, 1, "[TrainModel] Enrollment finalized.", 0),
                         LogFormat(5, 1, "[TrainModel] Phrase model size: 32."),
                         LogFormat(5, 1, "[TrainModel] Created LPE data size: 13."),
                         CloseEntry,
                         LogWithCode(4, 1, "[TrainModel] Exit.", 0),
                         Log(4, 1, "[WriteModelToIStream] Entry."),
                         LogFormat(5, 1, "[WriteModelToIStream] Bytes written: 13."),
                         Log(4, 1, "[WriteModelToIStream] Exit."),
                         Log(4, 0, "[ComputeAndAddUserModelData] Exit.")};
        expected.insert(expected.end(), rest.begin(), rest.end());
        ExpectLines(expected);
    }

    /// Arms with the stream. @return the pattern
    std::vector<uint8_t> Arm()
    {
        const KeywordSelector selector{1, Language};
        uint8_t* block = nullptr;
        EXPECT_EQ(adapter.BuildArmingPatternData(stream.get(), &selector, 1, &block), S_OK);
        uint32_t size = 0;
        std::memcpy(&size, block, sizeof(size));
        const std::vector<uint8_t> pattern(block, block + size);
        CoTaskMemFree(block);
        return pattern;
    }

    /// Has a detection parsed, and expects it to be the user's or not.
    void ExpectDetection(bool userMatch, const std::string& threshold)
    {
        const DetectionResult block{.Size = DetectionResultMinSize,
                                    .PatternType = DetectorId,
                                    .NotRead20 = {},
                                    .KeywordStart = 1000,
                                    .KeywordEnd = 2000,
                                    .NotRead44 = {},
                                    .KeywordIdFw = 1,
                                    .NotRead50 = {},
                                    .KpdScore = {1, 2},
                                    .NotRead54 = {}};
        uint32_t keywordId = 0;
        uint16_t languageId = 0;
        BOOL isUserMatch = -1;
        uint64_t start = 0;
        uint64_t end = 0;
        EXPECT_EQ(adapter.ParseDetectionResultData(stream.get(), &block, &keywordId, &languageId, &isUserMatch, &start, &end),
                  S_OK);
        EXPECT_EQ(keywordId, 1U);
        EXPECT_EQ(languageId, Language);
        EXPECT_EQ(isUserMatch, userMatch ? 1 : 0);
        EXPECT_EQ(start, 1000U);
        EXPECT_EQ(end, 2000U);
        ExpectLines(
            {Log(4, 0, "[ParseDetectionResultData] Entry."), LogFormat(4, 0, "[ParseDetectionResultData] Language Id: 1033."),
             LogFormat(5, 0, "[ParseDetectionResultData] KeywordIdFw (1), KPD score (258), KPD threshold (" + threshold + ")."),
             Log(4, 0,
                 userMatch ? "[ParseDetectionResultData] User matched for the user model."
                           : "[ParseDetectionResultData] User matched for the user independent model."),
             LogFormat(5, 0, "[ParseDetectionResultData] Keyword start (1000), keyword end (2000)."),
             Log(4, 0, "[ParseDetectionResultData] Exit, success.")});
    }

    static constexpr std::array<std::size_t, Recordings> SampleCounts{1600, 1000, 149};
    static constexpr std::array<int32_t, Recordings> Positions{0, 1600, -1};

    HostStream stream = MakeHostStream();
    std::vector<MediaBuffer> recordings;
};

TEST_F(EndToEnd, BeforeTheEnrollmentThePredefinedModelIsArmed)
{
    EXPECT_EQ(Arm(), Pattern(192, "firmware 1033"));
    ExpectLines(ArmingLines({Log(5, 1, "[CheckIStreamForUserModel] There is no user model data in IStream."),
                             Log(4, 1, "[CheckIStreamForUserModel] Exit."),
                             Log(4, 0, "[BuildArmingPatternData] Using predefined model.")},
                            "192"));
    ExpectDetection(false, "192");
}

TEST_F(EndToEnd, EnrolledUserIsArmedAndDetected)
{
    Verify();
    Enroll();
    const Lines userModel{Log(4, 1, "[CheckIStreamForUserModel] Exit."),
                          Log(4, 0, "[BuildArmingPatternData] Using user model."),
                          Log(4, 1, "[GetUserModelFromIStream] Entry."),
                          LogFormat(5, 1, "[GetUserModelFromIStream] Expected user model size from IStream: 13."),
                          LogFormat(5, 1, "[GetUserModelFromIStream] User model data read successfully. Data size: 13."),
                          Log(4, 1, "[GetUserModelFromIStream] Exit."),
                          LogFormat(5, 0, "[BuildArmingPatternData] Dynamic model data size: 13.")};
    EXPECT_EQ(Arm(), Pattern(128, "VWOV lpe data"));
    ExpectLines(ArmingLines(userModel, "128"));
    ExpectDetection(true, "128");

    // Another adapter arms the same stream.
    VeloxKeywordDetectorAdapterImpl other(&logger, configuration.Path(), "1.2.3", DetectorId);
    const KeywordSelector selector{1, Language};
    uint8_t* block = nullptr;
    ASSERT_EQ(other.BuildArmingPatternData(stream.get(), &selector, 1, &block), S_OK);
    EXPECT_EQ(std::vector<uint8_t>(block, block + 57), Pattern(128, "VWOV lpe data"));
    CoTaskMemFree(block);
}

TEST_F(EndToEnd, SecondEnrollmentReplacesTheModel)
{
    engine.lpeData = "VWOV a first model, longer than the second";
    logger.Take();
    std::vector<IMFMediaBuffer*> handedOver{recordings[0].get()};
    ASSERT_EQ(adapter.ComputeAndAddUserModelData(stream.get(), {1, Language}, Positions.data(), handedOver.data(), 1), S_OK);
    logger.Take();
    engine.lpeData = "VWOV lpe data";
    Enroll();
    EXPECT_EQ(Arm(), Pattern(128, "VWOV lpe data"));
}

} // namespace

#include "DetectionResult.h"
#include "tests/library/adapter/Lines.h"
#include "tests/support/EngineOperationTest.h"
#include "tests/support/HostStream.h"
#include "tests/support/MediaBuffer.h"

#include <objbase.h>

#include <gmock/gmock.h>

#include <array>
#include <cstring>

namespace EndToEndTests
{

// The life of a user model: three recordings are verified, a model is trained from them and stored in a stream, the stream arms
// the detector, and what the firmware then reports is the user's.

using namespace RequestLines;

constexpr uint16_t Language = 1033;
constexpr uint32_t Recordings = 3;

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
        EXPECT_EQ(logger.Take(), expected.Logged());
    }

    void Verify()
    {
        for (std::size_t i = 0; i < Recordings; ++i)
        {
            SCOPED_TRACE(i);
            EXPECT_EQ(adapter.VerifyUserKeyword(stream.get(), 1, Language, Positions[i], recordings[i].get()), S_OK);
            // A detection in the first frame.
            ExpectLines(VerifyBegun("1", Language, Positions[i]) + Gathered +
                        WrapperLines::Detection(2, Settings, SampleCounts[i], 1, {"0.875000", "0.750000"}) + Detected);
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
        ExpectLines(ComputeBegun({0, 1600, -1}) + Gathered + WrapperLines::Training(2, {1600, 1000, 149}, Settings) +
                    StreamLines::ModelWritten(13) + ComputeExit);
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
    void ExpectDetection(bool userMatch, unsigned int threshold)
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
        ExpectLines(ParsingLines::Begun(Language) + ParsingLines::Scores(1, 258, threshold) +
                    ParsingLines::Matched(userMatch, 1000, 2000));
    }

    static constexpr std::array<std::size_t, Recordings> SampleCounts{1600, 1000, 149};
    static constexpr std::array<int32_t, Recordings> Positions{0, 1600, -1};

    HostStream stream = MakeHostStream();
    std::vector<MediaBuffer> recordings;
};

TEST_F(EndToEnd, BeforeTheEnrollmentThePredefinedModelIsArmed)
{
    EXPECT_EQ(Arm(), Pattern(192, "firmware 1033"));
    ExpectLines(ArmingLines::PredefinedArmed(Language, 10, 192, 13));
    ExpectDetection(false, 192);
}

TEST_F(EndToEnd, EnrolledUserIsArmedAndDetected)
{
    Verify();
    Enroll();
    EXPECT_EQ(Arm(), Pattern(128, "VWOV lpe data"));
    ExpectLines(ArmingLines::UserArmed(Language, StreamLines::ModelRead(13), 10, 128, 13));
    ExpectDetection(true, 128);

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

} // namespace EndToEndTests

#include "console/takes/TakeReport.h"

#include "console/text/Style.h"

#include <gmock/gmock.h>

using namespace velox::console;
using testing::HasSubstr;
using velox::engine::Status;

namespace
{

velox::engine::TakeReview Reviewed(Status status)
{
    velox::engine::TakeReview review;
    review.status = status;
    review.speechBegin = 8000;
    review.speechEnd = 20000;
    review.level = -23.4;
    return review;
}

TakeReport Report(const TakeEvidence& evidence, const velox::engine::TakeReview& review)
{
    return ReportTake("a.wav", {std::vector<float>(32000), "", 2.0}, review, evidence);
}

const std::vector<LoggedLine> Detected{
    {5, 1, "[FeedRecording] Best score(131.500000), predefined KPD float threshold (95.000000)."},
    {5, 1, "[FeedRecording] Recording quality: 31."}};

} // namespace

TEST(TakeReport, AnAcceptedTakeShowsScoreThresholdAndQuality)
{
    velox::engine::TakeReview review = Reviewed(Status::Success);
    review.phrase = velox::engine::Detection{};
    review.phrase->startSample = 8000;
    review.phrase->endSample = 17600;
    const TakeReport report = Report({true, Detected, 95.0, 10, true}, review);
    EXPECT_EQ(TakeText(report, 1, velox::console::Style(false)),
              " 1. a.wav: accepted\n"
              "      phrase from 0.50 s to 1.10 s, score 132 (threshold 95), 31 dB above the noise, level -23 dB\n");
}

TEST(TakeReport, EveryFaultHasItsReasonAndItsFix)
{
    for (const Status status : {Status::UtteranceTooShort, Status::NoSpeech, Status::TooQuiet, Status::Clipped,
                                Status::CutAtStart, Status::CutAtEnd, Status::TwoPhrases, Status::PhraseNotFound})
    {
        const TakeReport report = Report({false, {}, 95.0, 10, true}, Reviewed(status));
        ASSERT_EQ(report.remarks.size(), 1U);
        SCOPED_TRACE(report.remarks[0].code);
        EXPECT_FALSE(report.remarks[0].text.empty());
        EXPECT_FALSE(report.remarks[0].fix.empty());
    }
}

TEST(TakeReport, ClippingHasItsPlace)
{
    velox::engine::TakeReview review = Reviewed(Status::Clipped);
    review.clippedSamples = 412;
    review.firstClipped = 9600;
    const TakeReport report = Report({false, {}, 95.0, 10, true}, review);
    EXPECT_EQ(report.remarks[0].text, "clipped: 412 samples are at full scale, the first at 0.60 s");
}

TEST(TakeReport, AQualityThatIsTooLowIsTheReason)
{
    std::vector<LoggedLine> lines = Detected;
    lines[1].message = "[FeedRecording] Recording quality: 4294967294.";
    lines.push_back({4, 1, "[FeedRecording] Recording quality is too low. Returning false as a detection result."});
    const TakeReport report = Report({false, lines, 95.0, 10, true}, Reviewed(Status::Success));
    ASSERT_EQ(report.remarks.size(), 1U);
    EXPECT_EQ(report.remarks[0].code, "QualityTooLow");
    EXPECT_THAT(report.remarks[0].text, HasSubstr("-2 dB above the noise, at least 10 are needed"));
}

TEST(TakeReport, AScoreBelowTheThresholdIsTheReasonWhenNothingElseIs)
{
    velox::engine::TakeReview review = Reviewed(Status::Success);
    review.phrase = velox::engine::Detection{};
    review.phrase->score = 80.0F;
    const TakeReport report = Report({false, {}, 95.0, 10, true}, review);
    EXPECT_EQ(report.remarks.at(0).code, "ScoreTooLow");
    EXPECT_THAT(report.remarks.at(0).text, HasSubstr("its score 80 must be above 95"));
}

TEST(TakeReport, TheEnginesStatusIsTold)
{
    const std::vector<LoggedLine> lines{{2, 1, "[FeedRecording] Failed to feed frames.", std::nullopt, 111}};
    const TakeReport report = Report({false, lines, 95.0, 10, true}, Reviewed(Status::Success));
    EXPECT_EQ(report.remarks.at(0).code, "EngineStatus");
    EXPECT_THAT(report.remarks.at(0).text, HasSubstr("111 WrongFrameSize"));
}

TEST(TakeReport, AnAcceptedTakeMayHaveANote)
{
    const TakeReport report = Report({true, Detected, 95.0, 10, true}, Reviewed(Status::Clipped));
    EXPECT_THAT(TakeText(report, 3, velox::console::Style(false)), HasSubstr("note: clipped"));
}

TEST(TakeReport, AnUnreadableFileSaysWhyWithoutItsNameTwice)
{
    const TakeReport report =
        ReportUnreadable("b.wav", {ExitCode::BadInput, "b.wav is empty: it has no bytes.", "Record it again."});
    EXPECT_FALSE(report.readable);
    EXPECT_EQ(report.remarks.at(0).text, "is empty: it has no bytes.");
    EXPECT_EQ(TakeJson(report)["speech"], nullptr);
}

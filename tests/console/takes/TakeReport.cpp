#include "console/takes/TakeReport.h"

#include "console/pages/ReportText.h"

#include <gmock/gmock.h>

namespace TakeReportTests
{

using namespace velox::console;
using testing::HasSubstr;
using velox::engine::Status;

velox::engine::TakeReview Reviewed(Status status)
{
    velox::engine::TakeReview review;
    review.status = status;
    review.speechBegin = 8000;
    review.speechEnd = 20000;
    review.level = -23.4;
    return review;
}

/// With the phrase from 0.5 to 1.1 s.
velox::engine::TakeReview Found(float score)
{
    velox::engine::TakeReview review = Reviewed(Status::Success);
    review.phrase = velox::engine::Detection{};
    review.phrase->startSample = 8000;
    review.phrase->endSample = 17600;
    review.phrase->score = score;
    review.bestScore = score;
    review.frames.assign(200, {true, 20.0F, velox::engine::ScoreScale::Least});
    review.frames[110].score = score;
    return review;
}

Take TakeOf(const TakeEvidence& evidence, const velox::engine::TakeReview& review, std::vector<std::string> warnings = {})
{
    return MakeTake("a.wav", {std::vector<float>(32000), "", 2.0, std::move(warnings)}, review, evidence);
}

Take Judged(const std::string& file, bool accepted, bool readable = true)
{
    return {file, accepted, readable};
}

Value ValueOf(const Entry& entry, std::string_view key)
{
    const auto fact = std::ranges::find(entry.facts, key, &Fact::key);
    return fact == entry.facts.end() ? Value("no such fact") : fact->value;
}

const std::vector<LoggedLine> Detected{
    {5, 1, "[FeedRecording] Best score(131.500000), predefined KPD float threshold (95.000000)."},
    {5, 1, "[FeedRecording] Recording quality: 31."}};

TEST(TakeReport, AnAcceptedTakeShowsScoreThresholdAndQuality)
{
    const std::vector<Take> takes{TakeOf({true, Detected, 95.0, 10}, Found(131.5F))};
    EXPECT_EQ(
        ReportText(VerificationReport(1033, takes), false, false),
        "accepted  a.wav\n"
        "    phrase 0.50 s to 1.10 s, score 132, quality 31 dB above the noise, level -23 dB, speech 0.50 s to 1.25 s, length "
        "2.00 s\n"
        "Language:      1033 (en-US)\n"
        "Threshold:     95\n");
}

TEST(TakeReport, MachinesGetFlatFactsAndNullsForWhatIsNotKnown)
{
    const std::vector<Take> takes{TakeOf({true, Detected, 95.0, 10}, Found(131.5F)),
                                  UnreadableTake("b.wav", {ExitCode::BadInput, "b.wav is empty.", "Record it again."})};
    const Report report = VerificationReport(1033, takes);
    const Entry& found = report.results.at(0);
    EXPECT_EQ(ValueOf(found, "phraseBegin"), Value(0.5));
    EXPECT_EQ(ValueOf(found, "phraseEnd"), Value(1.1));
    EXPECT_EQ(ValueOf(found, "speechBegin"), Value(0.5));
    EXPECT_EQ(ValueOf(found, "speechEnd"), Value(1.25));
    EXPECT_EQ(ValueOf(found, "score"), Value(131.5));
    EXPECT_EQ(ValueOf(found, "threshold"), Value(95.0));
    EXPECT_EQ(ValueOf(found, "quality"), Value(31));
    EXPECT_EQ(ValueOf(found, "clippedSamples"), Value(std::size_t{0}));
    for (const char* key : {"phraseBegin", "phraseEnd", "speechBegin", "speechEnd", "score", "threshold", "quality", "level"})
    {
        EXPECT_EQ(ValueOf(report.results.at(1), key), Value()) << key;
    }
}

TEST(TakeReport, ThePictureHasThePhraseWithItsScoreAndBothCurves)
{
    const std::vector<Take> takes{TakeOf({true, Detected, 95.0, 10}, Found(131.5F))};
    const Picture picture = VerificationReport(1033, takes).results.at(0).picture;
    EXPECT_EQ(picture.seconds, 2.0);
    EXPECT_FALSE(picture.wave.empty());
    ASSERT_EQ(picture.marks.size(), 2U);
    EXPECT_EQ(picture.marks[0].kind, Mark::Kind::Speech);
    EXPECT_EQ(picture.marks[1].kind, Mark::Kind::Phrase);
    EXPECT_EQ(picture.marks[1].score, 131.5);
    EXPECT_EQ(picture.quality.values.size(), 200U);
    EXPECT_EQ(picture.score.values.at(110), 131.5F);
    EXPECT_TRUE(std::isnan(picture.score.values.at(109)));
    EXPECT_EQ(picture.threshold, 95.0);
}

TEST(TakeReport, EveryFaultHasItsReasonAndItsFix)
{
    for (const Status status : {Status::UtteranceTooShort, Status::NoSpeech, Status::TooQuiet, Status::Clipped,
                                Status::CutAtStart, Status::CutAtEnd, Status::TwoPhrases, Status::PhraseNotFound})
    {
        const Take take = TakeOf({false, {}, 95.0, 10}, Reviewed(status));
        ASSERT_EQ(take.remarks.size(), 1U);
        SCOPED_TRACE(take.remarks[0].code);
        EXPECT_EQ(take.remarks[0].tone, Tone::Bad);
        EXPECT_FALSE(take.remarks[0].text.empty());
        EXPECT_FALSE(take.remarks[0].fix.empty());
    }
    EXPECT_FALSE(WhyUseless(Reviewed(Status::Success), 1.0).has_value());
}

TEST(TakeReport, ClippingHasItsPlace)
{
    velox::engine::TakeReview review = Reviewed(Status::Clipped);
    review.clippedSamples = 412;
    review.firstClipped = 9600;
    const Take take = TakeOf({false, {}, 95.0, 10}, review);
    EXPECT_EQ(take.remarks[0].text, "clipped: 412 samples are at full scale, the first at 0.60 s");
    const std::vector<Take> takes{take};
    const Mark mark = VerificationReport(1033, takes).results.at(0).picture.marks.back();
    EXPECT_EQ(mark.kind, Mark::Kind::Clipped);
    EXPECT_DOUBLE_EQ(mark.begin, 0.6);
}

TEST(TakeReport, AQualityThatIsTooLowIsTheReason)
{
    std::vector<LoggedLine> lines = Detected;
    lines[1].message = "[FeedRecording] Recording quality: 4294967294.";
    lines.push_back({4, 1, "[FeedRecording] Recording quality is too low. Returning false as a detection result."});
    const Take take = TakeOf({false, lines, 95.0, 10}, Reviewed(Status::Success));
    ASSERT_EQ(take.remarks.size(), 1U);
    EXPECT_EQ(take.remarks[0].code, "QualityTooLow");
    EXPECT_THAT(take.remarks[0].text, HasSubstr("-2 dB above the noise, at least 10 are needed"));
}

TEST(TakeReport, AScoreBelowTheThresholdIsTheReasonWhenNothingElseIs)
{
    const Take take = TakeOf({false, {}, 95.0, 10}, Found(80.0F));
    EXPECT_EQ(take.remarks.at(0).code, "ScoreTooLow");
    EXPECT_THAT(take.remarks.at(0).text, HasSubstr("its score 80 must be above 95"));
}

TEST(TakeReport, TheEnginesStatusIsTold)
{
    const std::vector<LoggedLine> lines{{2, 1, "[FeedRecording] Failed to feed frames.", std::nullopt, 111}};
    const Take take = TakeOf({false, lines, 95.0, 10}, Reviewed(Status::Success));
    EXPECT_EQ(take.remarks.at(0).code, "EngineStatus");
    EXPECT_THAT(take.remarks.at(0).text, HasSubstr("111 WrongFrameSize"));
}

TEST(TakeReport, AnAcceptedTakeMayHaveANote)
{
    const Take take = TakeOf({true, Detected, 95.0, 10}, Reviewed(Status::Clipped));
    EXPECT_EQ(take.remarks.at(0).code, "Clipped");
    EXPECT_EQ(take.remarks.at(0).tone, Tone::Note);
}

TEST(TakeReport, WhatIsOddAboutTheSoundIsAWarning)
{
    const Take take = TakeOf({true, Detected, 95.0, 10}, Found(131.5F), {"12 samples lie beyond full scale"});
    ASSERT_EQ(take.remarks.size(), 1U);
    EXPECT_EQ(take.remarks[0].tone, Tone::Warning);
    EXPECT_EQ(take.remarks[0].text, "12 samples lie beyond full scale");
}

TEST(TakeReport, AnUnreadableFileSaysWhyWithoutItsName)
{
    const Take take = UnreadableTake("b.wav", {ExitCode::BadInput, "b.wav is empty: it has no bytes.", "Record it again."});
    EXPECT_FALSE(take.readable);
    EXPECT_EQ(take.remarks.at(0).code, "Unreadable");
    EXPECT_EQ(take.remarks.at(0).text, "is empty: it has no bytes");
    EXPECT_EQ(take.remarks.at(0).fix, "Record it again.");
}

TEST(TakeReport, OneSentenceTellsOfAllTakes)
{
    const auto verdict = [](const std::vector<Take>& takes) {
        return VerificationReport(1033, takes).verdict;
    };
    EXPECT_EQ(verdict({Judged("a.wav", true)}), "The take is accepted.");
    EXPECT_EQ(verdict({Judged("a.wav", false)}), "The take is refused. Record again: a.wav.");
    EXPECT_EQ(verdict({Judged("a.wav", true), Judged("b.wav", false), Judged("c.wav", false, false)}),
              "1 of 3 takes are accepted. Record again: b.wav, c.wav.");
}

TEST(TakeReport, AFileThatCannotBeReadCountsMoreThanATakeThatIsRefused)
{
    const auto exitCode = [](const std::vector<Take>& takes) {
        return VerificationReport(1033, takes).exitCode;
    };
    EXPECT_EQ(exitCode({Judged("a.wav", true)}), ExitCode::Success);
    EXPECT_EQ(exitCode({Judged("a.wav", true), Judged("b.wav", false)}), ExitCode::Refused);
    EXPECT_EQ(exitCode({Judged("a.wav", false), Judged("b.wav", false, false)}), ExitCode::BadInput);
}

TEST(TakeReport, AFailureLeavesWhatWasFound)
{
    const std::vector<Take> takes{Judged("a.wav", true)};
    const Report report = Failed(VerificationReport(1033, takes), {ExitCode::LibraryFailure, "Training failed.", "Try again."});
    EXPECT_EQ(report.exitCode, ExitCode::LibraryFailure);
    EXPECT_EQ(report.error->message, "Training failed.");
    EXPECT_EQ(report.results.size(), 1U);
}

} // namespace TakeReportTests

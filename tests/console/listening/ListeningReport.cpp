#include "console/listening/ListeningReport.h"

#include "console/pages/ReportDocument.h"
#include "console/pages/ReportPage.h"
#include "console/pages/ReportText.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <cmath>

namespace ListeningReportTests
{

using namespace velox;
using namespace velox::console;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using Json = nlohmann::ordered_json;

/// Of half a second.
HeardPhrase PhraseAt(double start, double score)
{
    HeardPhrase phrase;
    phrase.peak.detection.startSample = std::lround(start * 16000.0);
    phrase.peak.detection.endSample = phrase.peak.detection.startSample + 8000;
    phrase.peak.detection.phraseScore = static_cast<float>(score);
    phrase.peak.score = static_cast<uint16_t>(score * 256.0);
    return phrase;
}

HeardPhrase NearMissAt(double start, double score)
{
    HeardPhrase phrase = PhraseAt(start, score);
    phrase.isNear = true;
    return phrase;
}

HeardPhrase DetectionAt(double start, double score)
{
    HeardPhrase phrase = PhraseAt(start, score);
    phrase.peak.passed = true;
    phrase.block = {1, 2, 3};
    phrase.parsed = {0, 1, 1033, true, 5'000'000, 10'000'000, {}};
    return phrase;
}

HeardFile FileOf(const std::string& name, double seconds, const std::vector<HeardPhrase>& phrases = {})
{
    HeardFile file{name};
    file.seconds = seconds;
    file.phrases = phrases;
    return file;
}

Report ReportFor(const std::vector<HeardFile>& files)
{
    return ListeningReport({"arm.bin", 1234, 1033, {}}, {100 * 256, false, files});
}

std::string TextFor(const std::vector<HeardFile>& files)
{
    return ReportText(ReportFor(files), false, false);
}

Report LiveReportFor(const HeardFile& session)
{
    return ListeningReport({"arm.bin", 1234, 1033, {}, true}, {100 * 256, false, {session}});
}

Json DocumentFor(const std::vector<HeardFile>& files)
{
    return Json::parse(ReportDocument("listen", ReportFor(files)));
}

TEST(ListeningReport, DetectionsAndNearMissesStandTogetherInTheirPlaces)
{
    HeardFile file = FileOf("evening.wav", 1800.0, {DetectionAt(1.25, 104.5), NearMissAt(20.0, 91.25), DetectionAt(75.0, 130.0)});
    file.conversion = "converted from 44.1 kHz stereo";
    file.highestSilent = 91 * 256 + 64;
    file.phrases[0].savedBlock = "blocks/evening-001.result";
    const Report report = ReportFor({file});
    EXPECT_EQ(report.exitCode, ExitCode::Success);
    EXPECT_EQ(report.verdict, "2 detections in 0.50 h.");
    const std::string told = "1033 (en-US), user match: yes, counter 5000000 to 10000000";
    EXPECT_EQ(
        ReportText(report, false, false),
        "detected  evening.wav\n"
        "    length 0.50 h, audio converted from 44.1 kHz stereo, detections 2, near misses 1, highest that did not fire 91.2\n"
        "                                   Score  Threshold  What came of it                                             "
        "Block\n"
        "    0:01.25 to 0:01.75  detected   104.5  100.0      " +
            told +
            "  blocks/evening-001.result\n"
            "    0:20.00 to 0:20.50  near miss  91.2   100.0      the words are not clear enough\n"
            "    1:15.00 to 1:15.50  detected   130.0  100.0      " +
            told +
            "\n"
            "Pattern:       arm.bin, 1234 bytes\n"
            "Language:      1033 (en-US)\n"
            "Model:         everybody's\n"
            "Threshold:     100\n"
            "Heard:         0.50 h in 1 file\n"
            "Detections:    2 (4.0 per hour)\n"
            "Near misses:   1\n"
            "Did not fire:  91.2 at most: a lower threshold fires there\n");
}

TEST(ListeningReport, TellsMachinesTheSame)
{
    HeardFile file = FileOf("evening.wav", 10.0, {DetectionAt(1.25, 104.5), NearMissAt(20.0, 91.25)});
    file.highestSilent = 91 * 256 + 64;
    file.phrases[0].savedBlock = "blocks/evening-001.result";
    const Json document = DocumentFor({file, FileOf("silence.wav", 1.0)});
    EXPECT_EQ(document["verdict"], "1 detection in 11.0 s.");
    EXPECT_EQ(document["facts"], Json::parse(R"({"pattern": "arm.bin", "patternBytes": 1234, "language": 1033,
        "userModel": false, "threshold": 100.0, "seconds": 11.0, "detections": 1, "detectionsPerHour": null, "nearMisses": 1,
        "highestSilentScore": 91.25})"));
    EXPECT_EQ(document["results"], Json::parse(R"([
        {"title": "evening.wav", "status": "detected", "file": "evening.wav", "seconds": 10.0, "conversion": "",
         "detections": 1, "nearMisses": 1, "highestSilentScore": 91.25, "deafFrom": null, "overruns": 0, "remarks": [],
         "parts": [{"title": "0:01.25 to 0:01.75", "status": "detected", "start": 1.25, "end": 1.75, "score": 104.5,
                    "threshold": 100.0, "phraseScore": 104.5, "result": "0x00000000 S_OK", "keywordId": 1, "language": 1033,
                    "userMatch": true, "keywordStart": 5000000, "keywordEnd": 10000000, "reason": null,
                    "block": "blocks/evening-001.result", "audio": null, "remarks": [], "parts": []},
                   {"title": "0:20.00 to 0:20.50", "status": "near miss", "start": 20.0, "end": 20.5, "score": 91.25,
                    "threshold": 100.0, "phraseScore": 91.25, "result": null, "keywordId": null, "language": null,
                    "userMatch": null, "keywordStart": null, "keywordEnd": null, "reason": "the words are not clear enough",
                    "block": null, "audio": null, "remarks": [], "parts": []}]},
        {"title": "silence.wav", "status": "nothing", "file": "silence.wav", "seconds": 1.0, "conversion": "",
         "detections": 0, "nearMisses": 0, "highestSilentScore": null, "deafFrom": null, "overruns": 0, "remarks": [], "parts": []}])"));
}

TEST(ListeningReport, NothingDetectedIsANo)
{
    const Report report = ReportFor({FileOf("silence.wav", 12.0)});
    EXPECT_EQ(report.exitCode, ExitCode::Refused);
    EXPECT_EQ(report.verdict, "Nothing was detected in 12.0 s.");
    EXPECT_THAT(TextFor({FileOf("silence.wav", 12.0)}), HasSubstr("nothing else came near the phrase"));
}

TEST(ListeningReport, ABlockThatTheLibraryRefusesIsItsFailure)
{
    HeardFile file = FileOf("a.wav", 10.0, {DetectionAt(1.0, 104.5), DetectionAt(2.0, 104.5)});
    file.phrases[1].parsed = {static_cast<int32_t>(0x80070057), 0, 0, false, 0, 0, "It is too short."};
    const Report report = ReportFor({file});
    EXPECT_EQ(report.exitCode, ExitCode::LibraryFailure);
    EXPECT_EQ(report.verdict, "The library refused 1 of 2 result blocks in 10.0 s.");
    EXPECT_EQ(report.results[0].parts[1].status, "reported");
    EXPECT_THAT(TextFor({file}), HasSubstr("the library refuses the block: 0x80070057 E_INVALIDARG It is too short."));
    EXPECT_TRUE(DocumentFor({file})["results"][0]["parts"][1]["userMatch"].is_null());
}

TEST(ListeningReport, AnotherKeywordIsNoMatch)
{
    HeardFile file = FileOf("a.wav", 10.0, {DetectionAt(1.0, 104.5)});
    file.phrases[0].parsed.keywordId = 0;
    const Report report = ReportFor({file});
    EXPECT_EQ(report.exitCode, ExitCode::Refused);
    EXPECT_EQ(report.verdict, "1 of 1 result block named a keyword that was not armed.");
    EXPECT_THAT(TextFor({file}), HasSubstr("keyword id 0, no match"));
}

TEST(ListeningReport, AResetIsToldWithWhatWasNotHeard)
{
    HeardFile file = FileOf("a.wav", 10.0, {DetectionAt(1.0, 104.5)});
    file.phrases[0].block.clear();
    file.phrases[0].parsed = {};
    file.deafFrom = 1.5;
    const Report report = ReportFor({file});
    EXPECT_EQ(report.exitCode, ExitCode::Refused);
    EXPECT_EQ(report.verdict, "The DSP reset itself in 1 file and was deaf from then on.");
    EXPECT_EQ(report.results[0].parts.at(0).status, "lost");
    EXPECT_THAT(TextFor({file}), HasSubstr("the DSP reset itself at 0:01.50: pattern and arming are lost, and the last 8.5 s"));
    EXPECT_EQ(DocumentFor({file})["results"][0]["deafFrom"], 1.5);
}

TEST(ListeningReport, ANearMissHasItsReason)
{
    HeardFile file = FileOf("a.wav", 10.0, {NearMissAt(1.0, 30.0), NearMissAt(3.0, 80.0)});
    file.phrases[0].peak.detection.searchScore = 120.0F;
    file.phrases[1].peak.detection.phraseScore = 120.0F;
    EXPECT_THAT(TextFor({file}), HasSubstr("it sounds like a part of the phrase (score 120.0 of the search alone)"));
    EXPECT_THAT(TextFor({file}), HasSubstr("the words fit (score 120.0), the voice does not"));
}

TEST(ListeningReport, LowerNearMissesAreCounted)
{
    HeardFile file = FileOf("a.wav", 10.0, {NearMissAt(1.0, 90.0)});
    file.lowerNearMisses = 37;
    EXPECT_THAT(TextFor({file}), HasSubstr("and 37 lower near misses\n"));
    EXPECT_THAT(TextFor({file}), HasSubstr("Near misses:   38\n"));
}

TEST(ListeningReport, WarningsOfTheAudioAreRemarks)
{
    HeardFile file = FileOf("a.wav", 10.0);
    file.warnings = {"it has a constant offset"};
    EXPECT_THAT(TextFor({file}), HasSubstr("warning: it has a constant offset\n"));
}

TEST(ListeningReport, WhatCannotBeReadIsToldBesideTheRest)
{
    HeardFile bad = FileOf("b.wav", 0.0);
    bad.failures = {{ExitCode::BadInput, "b.wav is empty: it has no bytes.", "Record it again."}};
    const Report report = ReportFor({FileOf("a.wav", 10.0, {DetectionAt(1.0, 104.5)}), bad});
    EXPECT_EQ(report.exitCode, ExitCode::BadInput);
    EXPECT_EQ(report.verdict, "1 detection in 10.0 s; 1 of 2 recordings could not be read.");
    ASSERT_TRUE(report.error.has_value());
    EXPECT_EQ(report.error->message, "b.wav is empty: it has no bytes.");
    ASSERT_THAT(report.results, SizeIs(2));
    EXPECT_THAT(report.results[0].parts, SizeIs(1));
    EXPECT_EQ(report.results[1].status, "unreadable");
    EXPECT_EQ(report.results[1].tone, Tone::Bad);
    EXPECT_EQ(report.results[1].remarks.at(0).fix, "Record it again.");
}

TEST(ListeningReport, TheWorstFailureHasTheExitCode)
{
    HeardFile unwritten = FileOf("a.wav", 10.0, {DetectionAt(1.0, 104.5)});
    unwritten.failures = {{ExitCode::WriteFailed, "The disk is full.", ""}};
    HeardFile bad = FileOf("b.wav", 0.0);
    bad.failures = {{ExitCode::BadInput, "b.wav is empty.", ""}};
    EXPECT_EQ(ReportFor({bad, unwritten, bad}).exitCode, ExitCode::WriteFailed);
    EXPECT_EQ(ReportFor({unwritten}).results[0].status, "detected");
    bad.failures = {{ExitCode::Interrupted, "Interrupted.", ""}};
    const Report interrupted = ReportFor({unwritten, bad});
    EXPECT_EQ(interrupted.exitCode, ExitCode::Interrupted);
    EXPECT_EQ(interrupted.verdict, "1 detection in 10.0 s; interrupted.");
    EXPECT_EQ(interrupted.results[1].status, "interrupted");
}

TEST(ListeningReport, PicturesShowWhatIsCompared)
{
    HeardFile file = FileOf("a.wav", 100.0, {DetectionAt(10.0, 104.5), NearMissAt(11.0, 91.25), DetectionAt(75.0, 130.0)});
    file.wave = {{-0.5F, 0.5F}, {-0.25F, 0.25F}};
    file.phrases[0].picture = {9.0, 2.5, {{-0.5F, 0.5F}}};
    file.phrases[2].picture = {74.0, 2.5, {{-0.5F, 0.5F}}};
    const Report report = ReportFor({file});
    const Picture& whole = report.results[0].picture;
    EXPECT_EQ(whole.seconds, 100.0);
    EXPECT_EQ(whole.threshold, 100.0);
    EXPECT_THAT(whole.score.values, IsEmpty()) << "no score of the words alone, which nothing is compared with";
    ASSERT_THAT(whole.marks, SizeIs(3));
    EXPECT_EQ(whole.marks[0].kind, Mark::Kind::Phrase);
    EXPECT_EQ(whole.marks[0].score, 104.5);
    EXPECT_EQ(whole.marks[1].kind, Mark::Kind::NearMiss);
    EXPECT_EQ(whole.marks[1].end, 11.5);
    EXPECT_EQ(whole.marks[1].score, 91.25);

    const Picture& closeUp = report.results[0].parts[0].picture;
    EXPECT_EQ(closeUp.firstSecond, 9.0);
    EXPECT_EQ(closeUp.threshold, 100.0);
    EXPECT_THAT(closeUp.marks, SizeIs(2)) << "the neighbour, too";
    EXPECT_THAT(report.results[0].parts[2].picture.marks, SizeIs(1));
    EXPECT_THAT(ReportPage("listen", report), HasSubstr("class=\"stem near\""));
}

TEST(ListeningReport, RemarksOnPatternAndFaultAreTheRuns)
{
    const Report report = ListeningReport({"arm.bin", 1234, 1033, {{Tone::Warning, "Odd", "something is odd", ""}}}, Heard{});
    EXPECT_THAT(ReportText(report, false, false), HasSubstr("warning: something is odd\n"));
}

TEST(ListeningReport, ALiveSessionInWhichNobodySpokeIsNoFailure)
{
    const Report report = LiveReportFor(FileOf("Desk", 12.0));
    EXPECT_EQ(report.exitCode, ExitCode::Success);
    EXPECT_EQ(report.verdict, "Nothing was detected in 12.0 s.");
    EXPECT_THAT(ReportText(report, false, false), HasSubstr("Heard:         12.0 s\n"));
    EXPECT_EQ(ReportFor({FileOf("a.wav", 12.0)}).exitCode, ExitCode::Refused) << "of a recording it is one";
}

TEST(ListeningReport, FaultsOfALiveSessionCountAsThoseOfARecording)
{
    HeardFile deaf = FileOf("Desk", 12.0, {PhraseAt(1.0, 104.5)});
    deaf.phrases[0].peak.passed = true;
    deaf.deafFrom = 1.5;
    EXPECT_EQ(LiveReportFor(deaf).exitCode, ExitCode::Refused);
    EXPECT_EQ(LiveReportFor(deaf).verdict, "The DSP reset itself and was deaf from then on.");

    HeardFile refused = FileOf("Desk", 12.0, {DetectionAt(1.0, 104.5)});
    refused.phrases[0].parsed.result = static_cast<int32_t>(0x80070057);
    EXPECT_EQ(LiveReportFor(refused).exitCode, ExitCode::LibraryFailure);
}

TEST(ListeningReport, AMicrophoneThatIsGoneIsAnErrorBesideWhatWasHeard)
{
    HeardFile session = FileOf("Desk", 12.0, {DetectionAt(1.0, 104.5)});
    session.failures = {{ExitCode::WriteFailed, "Cannot write a.wav.", ""}, {ExitCode::BadInput, "Desk is gone.", "Plug it in."}};
    const Report report = LiveReportFor(session);
    EXPECT_EQ(report.exitCode, ExitCode::WriteFailed) << "that which lost most";
    EXPECT_EQ(report.results.at(0).status, "gone");
    EXPECT_EQ(report.verdict, "1 detection in 12.0 s; then the microphone was gone.");
    session.failures.erase(session.failures.begin());
    EXPECT_EQ(LiveReportFor(session).exitCode, ExitCode::BadInput);
}

TEST(ListeningReport, LostSoundIsSaid)
{
    HeardFile session = FileOf("Desk", 12.0);
    session.overruns = 2;
    const Report report = LiveReportFor(session);
    EXPECT_THAT(ReportText(report, false, false), HasSubstr("warning: sound was lost 2 times: a phrase may have been missed"));
    EXPECT_EQ(Json::parse(ReportDocument("listen", report))["results"][0]["overruns"], 2);
}

TEST(ListeningReport, APhraseIsToldInALine)
{
    EXPECT_EQ(PhraseLine(DetectionAt(1.25, 104.5), 100.0),
              "detected  0:01.25 to 0:01.75  score 104.5, 1033 (en-US), user match: yes, counter 5000000 to 10000000");
    EXPECT_EQ(PhraseLine(NearMissAt(20.0, 91.25), 100.0),
              "near miss  0:20.00 to 0:20.50  score 91.2, the words are not clear enough");
}

} // namespace ListeningReportTests

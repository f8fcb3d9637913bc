#include "console/listening/ListeningReport.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <cmath>

namespace
{

using namespace velox;
using namespace velox::console;
using testing::HasSubstr;
using testing::Not;

firmware::Peak PeakAt(double start, double score, bool passed)
{
    firmware::Peak peak;
    peak.detection.startSample = std::lround(start * 16000.0);
    peak.detection.endSample = peak.detection.startSample + 8000;
    peak.detection.score = static_cast<float>(score);
    peak.detection.phraseScore = static_cast<float>(score);
    peak.score = static_cast<uint16_t>(score * 256.0);
    peak.passed = passed;
    return peak;
}

HeardDetection DetectionAt(double start, double score)
{
    HeardDetection detection;
    detection.peak = PeakAt(start, score, true);
    detection.block = {1, 2, 3};
    detection.parsed = {0, 1, 1033, true, 5'000'000, 10'000'000, {}};
    return detection;
}

HeardFile File(const std::string& name, double seconds)
{
    HeardFile file;
    file.name = name;
    file.heard.seconds = seconds;
    file.heard.threshold = 100 * 256;
    return file;
}

Outcome OutcomeOf(const std::vector<HeardFile>& files)
{
    return ListeningOutcome({"arm.bin", 1234, 1033, {}}, files, Style(false));
}

TEST(ListeningReport, TellsOfEveryDetectionInItsPlace)
{
    HeardFile file = File("evening.wav", 1800.0);
    file.conversion = "converted from 44.1 kHz stereo";
    file.heard.detections = {DetectionAt(1.25, 104.5), DetectionAt(75.0, 130.0)};
    file.heard.nearMisses = {PeakAt(20.0, 91.25, false)};
    file.heard.highestSilent = 91 * 256 + 64;
    const Outcome outcome = OutcomeOf({file});
    EXPECT_EQ(outcome.exitCode, ExitCode::Success);
    EXPECT_EQ(outcome.verdict, "2 detections in 0.50 h.");
    EXPECT_EQ(outcome.text,
              "Pattern:       arm.bin, 1234 bytes\n"
              "Language:      1033 (en-US)\n"
              "Model:         everybody's\n"
              "Threshold:     100\n"
              "\n"
              "evening.wav: 0.50 h, converted from 44.1 kHz stereo\n"
              "  0:01.25 to 0:01.75  detected  score 104.5, threshold 100.0; 1033 (en-US), user match: yes, counter 5000000 to "
              "10000000\n"
              "  0:20.00 to 0:20.50  near miss  score 91.2, threshold 100.0; the words are not clear enough\n"
              "  1:15.00 to 1:15.50  detected  score 130.0, threshold 100.0; 1033 (en-US), user match: yes, counter 5000000 to "
              "10000000\n"
              "\n"
              "Heard 0.50 h in 1 file: 2 detections (4.0 per hour), 1 near miss. Highest score that did not fire: 91.2.\n");
}

TEST(ListeningReport, TellsMachinesTheSame)
{
    HeardFile file = File("evening.wav", 10.0);
    file.heard.userModel = true;
    file.heard.detections = {DetectionAt(1.25, 104.5)};
    file.heard.nearMisses = {PeakAt(20.0, 91.25, false)};
    file.heard.highestSilent = 91 * 256 + 64;
    file.savedBlocks = {"blocks/evening-001.result"};
    const Outcome outcome = OutcomeOf({file, File("silence.wav", 1.0)});
    EXPECT_EQ(outcome.results.Array(), nlohmann::ordered_json::parse(R"([
        {"file": "evening.wav", "seconds": 10.0, "conversion": "", "threshold": 100.0, "userModel": true,
         "detections": [{"start": 1.25, "end": 1.75, "score": 104.5, "threshold": 100.0, "phraseScore": 104.5,
                         "result": "0x00000000 S_OK", "keywordId": 1, "language": 1033, "userMatch": true,
                         "keywordStart": 5000000, "keywordEnd": 10000000, "block": "blocks/evening-001.result"}],
         "nearMisses": [{"start": 20.0, "end": 20.5, "score": 91.25, "threshold": 100.0, "phraseScore": 91.25,
                         "reason": "the words are not clear enough"}],
         "highestSilentScore": 91.25, "deafFrom": null},
        {"file": "silence.wav", "seconds": 1.0, "conversion": "", "threshold": 100.0, "userModel": false,
         "detections": [], "nearMisses": [], "highestSilentScore": null, "deafFrom": null}])"));
    EXPECT_THAT(outcome.text, HasSubstr("    saved as blocks/evening-001.result\n"));
    EXPECT_THAT(outcome.text, HasSubstr("silence.wav: 1.0 s\n  nothing\n"));
    EXPECT_EQ(outcome.verdict, "1 detection in 11.0 s.");
}

TEST(ListeningReport, NothingDetectedIsANo)
{
    const Outcome outcome = OutcomeOf({File("silence.wav", 12.0)});
    EXPECT_EQ(outcome.exitCode, ExitCode::Refused);
    EXPECT_EQ(outcome.verdict, "Nothing was detected in 12.0 s.");
    EXPECT_THAT(outcome.text, HasSubstr("Nothing else came near the phrase."));
}

TEST(ListeningReport, ABlockThatTheLibraryRefusesIsItsFailure)
{
    HeardFile file = File("a.wav", 10.0);
    file.heard.detections = {DetectionAt(1.0, 104.5), DetectionAt(2.0, 104.5)};
    file.heard.detections[1].parsed = {static_cast<int32_t>(0x80070057), 0, 0, false, 0, 0, "It is too short."};
    const Outcome outcome = OutcomeOf({file});
    EXPECT_EQ(outcome.exitCode, ExitCode::LibraryFailure);
    EXPECT_EQ(outcome.verdict, "The library refused 1 of 2 result blocks in 10.0 s.");
    EXPECT_THAT(outcome.text, HasSubstr("reported  score 104.5, threshold 100.0; the library refuses the block: 0x80070057 "
                                        "E_INVALIDARG It is too short.\n"));
    EXPECT_TRUE(outcome.results.Array()[0]["detections"][1]["userMatch"].is_null());
}

TEST(ListeningReport, AnotherKeywordIsNoMatch)
{
    HeardFile file = File("a.wav", 10.0);
    file.heard.detections = {DetectionAt(1.0, 104.5)};
    file.heard.detections[0].parsed.keywordId = 0;
    const Outcome outcome = OutcomeOf({file});
    EXPECT_EQ(outcome.exitCode, ExitCode::Refused);
    EXPECT_EQ(outcome.verdict, "1 of 1 result block named a keyword that was not armed.");
    EXPECT_THAT(outcome.text, HasSubstr("keyword id 0, no match"));
}

TEST(ListeningReport, AResetIsToldWithWhatWasNotHeard)
{
    HeardFile file = File("a.wav", 10.0);
    file.heard.deafFrom = 1.5;
    const Outcome outcome = OutcomeOf({file});
    EXPECT_EQ(outcome.exitCode, ExitCode::Refused);
    EXPECT_EQ(outcome.verdict, "The DSP reset itself in 1 file and was deaf from then on.");
    EXPECT_THAT(outcome.text, HasSubstr("  0:01.50  the DSP reset itself. Nothing after it was heard (8.5 s)"));
    EXPECT_EQ(outcome.results.Array()[0]["deafFrom"], 1.5);
}

TEST(ListeningReport, ANearMissHasItsReason)
{
    HeardFile file = File("a.wav", 10.0);
    firmware::Peak part = PeakAt(1.0, 30.0, false);
    part.detection.phraseScore = 120.0F;
    part.detection.nearMargin = -5.0F;
    firmware::Peak stranger = PeakAt(3.0, 80.0, false);
    stranger.detection.phraseScore = 120.0F;
    file.heard.nearMisses = {part, stranger};
    const std::string text = OutcomeOf({file}).text;
    EXPECT_THAT(text, HasSubstr("it sounds like a part of the phrase (the words alone score 120.0)"));
    EXPECT_THAT(text, HasSubstr("the words fit (they alone score 120.0), the voice does not"));
}

TEST(ListeningReport, NotesStandAboveTheFiles)
{
    const Outcome outcome = ListeningOutcome({"arm.bin", 1234, 1033, {"Something is odd."}}, {File("a.wav", 1.0)}, Style(false));
    EXPECT_THAT(outcome.text, HasSubstr("Note:          Something is odd.\n\na.wav"));
}

TEST(ListeningReport, ClocksShowHoursOnlyWhenThereAre)
{
    EXPECT_EQ(ClockText(0.0), "0:00.00");
    EXPECT_EQ(ClockText(7.25), "0:07.25");
    EXPECT_EQ(ClockText(59.999), "1:00.00");
    EXPECT_EQ(ClockText(3723.4), "1:02:03.40");
}

} // namespace

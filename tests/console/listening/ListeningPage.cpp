#include "console/listening/ListeningPage.h"

#include "console/listening/ListeningReport.h"

#include <gmock/gmock.h>

namespace
{

using namespace velox;
using namespace velox::console;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

firmware::Peak PeakAt(int64_t second, uint16_t score)
{
    firmware::Peak peak;
    peak.detection.startSample = second * 16000;
    peak.detection.endSample = second * 16000 + 8000;
    peak.detection.phraseScore = score;
    peak.score = static_cast<uint16_t>(score * 256);
    return peak;
}

HeardFile Evening()
{
    HeardFile file;
    file.name = "evening.wav";
    file.conversion = "converted from 8 kHz mono";
    file.wave = {{-0.5F, 0.5F}};
    file.curves.quality.values = {3.0F, 20.0F};
    file.curves.score.values = {0.0F, 104.0F};
    file.heard.seconds = 60.0;
    file.heard.threshold = 100 * 256;
    HeardDetection detection;
    detection.peak = PeakAt(1, 104);
    detection.parsed = {0, 1, 1033, true, 1, 2, {}};
    file.heard.detections = {detection};
    file.heard.nearMisses = {PeakAt(20, 91)};
    return file;
}

Report Page(const std::vector<HeardFile>& files)
{
    const ListeningSubject subject{"arm.bin", 1234, 1033, {"Something is odd."}};
    return ListeningPage(subject, files, ListeningOutcome(subject, files, Style(false)));
}

TEST(ListeningPage, TellsTheSameAsTheOutcome)
{
    const Report page = Page({Evening()});
    EXPECT_EQ(page.command, "listen");
    EXPECT_EQ(page.verdict, "1 detection in 60.0 s.");
    EXPECT_EQ(page.tone, Tone::Good);
    EXPECT_THAT(page.notes, ElementsAre("Something is odd.", HasSubstr("Heard 60.0 s in 1 file: 1 detection, 1 near miss.")));
    ASSERT_TRUE(page.table.has_value());
    EXPECT_THAT(
        page.table->rows,
        ElementsAre(ElementsAre("evening.wav", "0:01.00", "0:01.50", "104.0", "100.0", HasSubstr("user match: yes")),
                    ElementsAre("evening.wav", "0:20.00", "0:20.50", "91.0", "100.0", HasSubstr("near miss: the words"))));
}

TEST(ListeningPage, MarksWhatWasHeard)
{
    const Report page = Page({Evening()});
    ASSERT_THAT(page.recordings, SizeIs(1));
    const ReportRecording& recording = page.recordings[0];
    EXPECT_EQ(recording.tone, Tone::Good);
    EXPECT_EQ(recording.verdict, "1 detection, 1 near miss");
    EXPECT_EQ(recording.conversion, "converted from 8 kHz mono");
    EXPECT_THAT(recording.wave, SizeIs(1));
    EXPECT_THAT(recording.quality.values, ElementsAre(3.0F, 20.0F));
    EXPECT_THAT(recording.score.values, ElementsAre(0.0F, 104.0F));
    EXPECT_EQ(recording.threshold, 100.0);
    ASSERT_THAT(recording.marks, SizeIs(2));
    EXPECT_EQ(recording.marks[0].kind, ReportMark::Kind::Phrase);
    EXPECT_EQ(recording.marks[0].begin, 1.0);
    EXPECT_EQ(recording.marks[0].end, 1.5);
    EXPECT_EQ(recording.marks[0].text, "score 104.0");
    EXPECT_EQ(recording.marks[1].kind, ReportMark::Kind::NearMiss);
}

TEST(ListeningPage, FaultsAreBad)
{
    HeardFile refused = Evening();
    refused.heard.detections[0].parsed.result = -1;
    HeardFile deaf = Evening();
    deaf.heard.deafFrom = 5.0;
    for (const HeardFile& file : {refused, deaf})
    {
        const Report page = Page({file});
        EXPECT_EQ(page.recordings[0].tone, Tone::Bad);
        EXPECT_THAT(page.recordings[0].marks, Contains(testing::Field(&ReportMark::kind, ReportMark::Kind::Fault)));
    }
}

TEST(ListeningPage, SilenceIsNeitherGoodNorBad)
{
    HeardFile silence = Evening();
    silence.heard.detections.clear();
    silence.heard.nearMisses.clear();
    const Report page = Page({silence});
    EXPECT_EQ(page.recordings[0].tone, Tone::Neutral);
    EXPECT_EQ(page.tone, Tone::Bad) << "but the answer is no";
}

} // namespace

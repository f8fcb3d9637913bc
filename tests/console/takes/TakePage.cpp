#include "console/takes/TakePage.h"

#include <gmock/gmock.h>

using namespace velox;
using namespace velox::console;
using testing::ElementsAre;

namespace
{

constexpr const char* Language = "1033 (en-US)";

TakeReport Accepted()
{
    TakeReport take;
    take.file = "a.wav";
    take.accepted = true;
    take.audio = {std::vector<float>(32'000, 0.1F), "converted from 44.1 kHz stereo", 2.0};
    take.review.speechBegin = 8'000;
    take.review.speechEnd = 24'000;
    take.review.level = -23.4;
    take.review.phrase = engine::Detection{};
    take.review.phrase->startSample = 9'600;
    take.review.phrase->endSample = 19'200;
    take.review.phrase->score = 131.5F;
    take.review.frames = {{false, 1.0F, 10.0F}, {true, 20.0F, 90.0F}};
    take.logged = {131.5, 31};
    take.threshold = 95.0;
    return take;
}

TakeReport Silent()
{
    TakeReport take;
    take.file = "b.wav";
    take.audio = {std::vector<float>(8'000), "", 0.5};
    take.remarks = {{"NoSpeech", "no speech in 0.50 s", "Speak."}};
    return take;
}

TakeReport Unreadable()
{
    return ReportUnreadable("c.wav", {ExitCode::BadInput, "c.wav is not a sound file.", "Give another."});
}

Report Page(const std::vector<TakeReport>& takes, ExitCode code = ExitCode::Success)
{
    return TakePage("verify", Language, takes, {code, "The verdict.", ""});
}

} // namespace

TEST(TakePage, TheHeadIsTheOutcomes)
{
    const Report good = Page({Accepted()});
    EXPECT_EQ(good.command, "verify");
    EXPECT_EQ(good.verdict, "The verdict.");
    EXPECT_EQ(good.tone, Tone::Good);
    EXPECT_EQ(Page({Silent()}, ExitCode::Refused).tone, Tone::Bad);
}

TEST(TakePage, TheThresholdIsAFactWhereOneIsKnown)
{
    const Report known = Page({Silent(), Accepted()});
    ASSERT_EQ(known.facts.size(), 2U);
    EXPECT_EQ(known.facts[0].value, Language);
    EXPECT_EQ(known.facts[1].value, "95");
    EXPECT_EQ(Page({Silent()}).facts.size(), 1U);
}

TEST(TakePage, EveryTakeHasARowAndThoseThatCouldBeReadAPicture)
{
    const Report page = Page({Accepted(), Silent(), Unreadable()});
    ASSERT_TRUE(page.table.has_value());
    EXPECT_THAT(page.table->rows, ElementsAre(ElementsAre("a.wav", "accepted", "2.00 s", "-23 dB", "31 dB", "132"),
                                              ElementsAre("b.wav", "refused", "0.50 s", "", "", ""),
                                              ElementsAre("c.wav", "refused", "0.00 s", "", "", "")));
    for (const std::vector<std::string>& row : page.table->rows)
    {
        EXPECT_EQ(row.size(), page.table->columns.size());
    }
    ASSERT_EQ(page.recordings.size(), 2U);
    EXPECT_EQ(page.recordings[1].name, "b.wav");
}

TEST(TakePage, APictureTellsWhatIsKnownOfItsTake)
{
    const ReportRecording recording = Page({Accepted()}).recordings.at(0);
    EXPECT_EQ(recording.conversion, "converted from 44.1 kHz stereo");
    EXPECT_EQ(recording.verdict, "Accepted");
    EXPECT_EQ(recording.threshold, 95.0);
    EXPECT_THAT(recording.quality.values, ElementsAre(1.0F, 20.0F));
    EXPECT_THAT(recording.score.values, ElementsAre(10.0F, 90.0F));
    EXPECT_EQ(recording.wave.size(), MostWaveStretches);
    ASSERT_EQ(recording.marks.size(), 2U);
    EXPECT_EQ(recording.marks[0].kind, ReportMark::Kind::Speech);
    EXPECT_DOUBLE_EQ(recording.marks[0].begin, 0.5);
    EXPECT_DOUBLE_EQ(recording.marks[0].end, 1.5);
    EXPECT_EQ(recording.marks[1].kind, ReportMark::Kind::Phrase);
    EXPECT_DOUBLE_EQ(recording.marks[1].begin, 0.6);
    EXPECT_EQ(recording.marks[1].text, "phrase, score 132");
}

TEST(TakePage, ARefusedTakeHasItsReasonsFixesAndItsFirstClippedSample)
{
    TakeReport take = Silent();
    take.review.firstClipped = 4'000;
    const ReportRecording recording = Page({take}, ExitCode::Refused).recordings.at(0);
    EXPECT_EQ(recording.tone, Tone::Bad);
    EXPECT_THAT(recording.reasons, ElementsAre("no speech in 0.50 s"));
    EXPECT_THAT(recording.fixes, ElementsAre("Speak."));
    ASSERT_EQ(recording.marks.size(), 1U);
    EXPECT_EQ(recording.marks[0].kind, ReportMark::Kind::Clipped);
    EXPECT_DOUBLE_EQ(recording.marks[0].begin, 0.25);
    EXPECT_DOUBLE_EQ(recording.marks[0].end, 0.25);
}

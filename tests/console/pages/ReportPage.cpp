#include "console/pages/ReportPage.h"

#include <gmock/gmock.h>

#include <tinyxml2.h>

namespace
{

using namespace velox::console;
using testing::HasSubstr;
using testing::Not;

constexpr const char* OddName = "take <1> & \"\xC3\xA9t\xC3\xA9\".wav";

Report SmallReport()
{
    Report report;
    report.command = "verify";
    report.verdict = "1 of 2 recordings refused.";
    report.tone = Tone::Bad;
    report.facts = {{"Language", "1033 (en-US)"}, {"Threshold", "100", "about half a false alarm per hour"}};
    report.table = ReportTable{"Takes", {"File", "Verdict"}, {{OddName, "accepted"}, {"b.wav", "refused"}}};
    ReportRecording recording;
    recording.name = OddName;
    recording.seconds = 2.0;
    recording.tone = Tone::Good;
    recording.verdict = "Accepted";
    recording.wave = {{-0.5F, 0.5F}};
    recording.marks = {{ReportMark::Kind::Phrase, 0.5, 1.5, "score <112>"}};
    ReportRecording unreadable;
    unreadable.name = "b.wav";
    unreadable.tone = Tone::Bad;
    unreadable.verdict = "Cannot be read";
    unreadable.reasons = {"b.wav is empty."};
    unreadable.fixes = {"Record it again."};
    report.recordings = {recording, unreadable};
    return report;
}

void ExpectWellFormed(const std::string& page)
{
    tinyxml2::XMLDocument document;
    document.Parse(page.c_str(), page.size());
    EXPECT_FALSE(document.Error()) << document.ErrorStr();
    EXPECT_STREQ(document.RootElement()->Name(), "html");
    EXPECT_EQ(document.RootElement()->NextSibling(), nullptr);
}

ReportRecording AnHour()
{
    ReportRecording recording;
    recording.name = "evening.wav";
    recording.seconds = 3600.0;
    recording.verdict = "3000 detections";
    std::vector<float> samples(16000 * 60);
    for (std::size_t i = 0; i < samples.size(); ++i)
    {
        samples[i] = static_cast<float>(i * 7919 % 2001) / 1000.0F - 1.0F;
    }
    recording.wave = WaveOf(samples);
    for (std::size_t i = 0; i < 360'000; ++i)
    {
        recording.quality.values.push_back(static_cast<float>(i * 7919 % 40));
        recording.score.values.push_back(static_cast<float>(i * 7919 % 150));
    }
    for (std::size_t i = 0; i < 30'000; ++i)
    {
        const double at = 0.12 * static_cast<double>(i);
        recording.marks.push_back({ReportMark::Kind::Phrase, at, at + 0.1, "score 120"});
    }
    return recording;
}

} // namespace

TEST(ReportPage, IsWellFormed)
{
    ExpectWellFormed(RenderReport(SmallReport()));
    ExpectWellFormed(RenderReport({}));
}

TEST(ReportPage, TextIsEscapedWhereverItStands)
{
    const std::string page = RenderReport(SmallReport());
    EXPECT_THAT(page, HasSubstr("1. take &lt;1&gt; &amp; &quot;\xC3\xA9t\xC3\xA9&quot;.wav"));
    EXPECT_THAT(page, HasSubstr("score &lt;112&gt;"));
    EXPECT_THAT(page, Not(HasSubstr("<1>")));
    EXPECT_THAT(page, Not(HasSubstr("<112>")));
}

TEST(ReportPage, NeedsNothingElse)
{
    const std::string page = RenderReport(SmallReport());
    for (const std::string reference : {"<script", "<link", "<img", "src=", "href=", "url(", "@import"})
    {
        SCOPED_TRACE(reference);
        EXPECT_THAT(page, Not(HasSubstr(reference)));
    }
}

TEST(ReportPage, SaysHowEverythingTurnedOutWithASignAndAWord)
{
    const std::string page = RenderReport(SmallReport());
    EXPECT_THAT(
        page,
        HasSubstr(
            "<span class=\"sign\" aria-hidden=\"true\">\xE2\x9C\x97</span><span class=\"word\">1 of 2 recordings refused."));
    EXPECT_THAT(page, HasSubstr("<span class=\"sign\" aria-hidden=\"true\">\xE2\x9C\x93</span><span class=\"word\">Accepted"));
    EXPECT_THAT(page, HasSubstr("<li>b.wav is empty.</li>"));
    EXPECT_THAT(page, HasSubstr("<li>Record it again.</li>"));
    EXPECT_THAT(page, HasSubstr("<li>Phrase, 0.50 s to 1.50 s: score &lt;112&gt;</li>"));
    EXPECT_THAT(page, HasSubstr("<span class=\"muted\">about half a false alarm per hour</span>"));
}

TEST(ReportPage, PlacesStandInTheOrderOfTheRecording)
{
    Report report = SmallReport();
    report.recordings[0].marks = {{ReportMark::Kind::Phrase, 1.0, 1.5}, {ReportMark::Kind::NearMiss, 0.2, 0.4}};
    EXPECT_THAT(RenderReport(report), HasSubstr("<li>Near miss, 0.20 s to 0.40 s</li>\n<li>Phrase, 1.00 s to 1.50 s</li>"));
}

TEST(ReportPage, CellsCarryTheirColumnForNarrowPages)
{
    EXPECT_THAT(RenderReport(SmallReport()), HasSubstr("<td data-column=\"Verdict\"><span>refused</span></td>"));
}

TEST(ReportPage, AnHourWithThousandsOfDetectionsStaysSmall)
{
    Report report;
    report.recordings = {AnHour()};
    report.table =
        ReportTable{"Detections", {"Place"}, std::vector<std::vector<std::string>>(30'000, {"0:12:03.4 to 0:12:04.3"})};
    const std::string page = RenderReport(report);
    EXPECT_LT(page.size(), 700'000U);
    EXPECT_THAT(page, HasSubstr("And 29500 more."));
    EXPECT_THAT(page, HasSubstr("and 29960 more places"));
    EXPECT_THAT(page, HasSubstr("30000 places"));
    ExpectWellFormed(page);
}

TEST(ReportPage, TheSameReportGivesTheSameBytes)
{
    EXPECT_EQ(RenderReport(SmallReport()), RenderReport(SmallReport()));
}

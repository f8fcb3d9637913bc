#include "console/pages/ReportPage.h"

#include <gmock/gmock.h>

#include <tinyxml2.h>

namespace ReportPageTests
{

using namespace velox::console;
using testing::HasSubstr;
using testing::Not;

constexpr const char* OddName = "take <1> & \"\xC3\xA9t\xC3\xA9\".wav";

Report SmallReport()
{
    Report report{ExitCode::Refused, "1 of 2 recordings refused."};
    report.facts = {{"language", 1033, "language", "1033 (en-US)"},
                    {"threshold", 100, "threshold", "100", "about half a false alarm per hour"},
                    {"hidden", "secret"}};
    report.remarks = {{Tone::Warning, "", "Two voices.", "Record one."}};
    Entry good{OddName, "accepted", Tone::Good, {{"seconds", 2, "length", "2.00 s"}}};
    good.picture.seconds = 2.0;
    good.picture.wave = {{-0.5F, 0.5F}};
    good.picture.marks = {{Mark::Kind::Phrase, 0.5, 1.5, "score <112>"}};
    const Entry bad{"b.wav", "refused", Tone::Bad, {}, {{Tone::Bad, "Empty", "it is empty", "Record it again."}}};
    report.results = {good, bad};
    return report;
}

std::string PageOf(const Report& report)
{
    return ReportPage("verify", report);
}

void ExpectWellFormed(const std::string& page)
{
    tinyxml2::XMLDocument document;
    document.Parse(page.c_str(), page.size());
    EXPECT_FALSE(document.Error()) << document.ErrorStr();
    EXPECT_STREQ(document.RootElement()->Name(), "html");
    EXPECT_EQ(document.RootElement()->NextSibling(), nullptr);
}

TEST(ReportPage, IsWellFormed)
{
    ExpectWellFormed(PageOf(SmallReport()));
    ExpectWellFormed(PageOf({}));
}

TEST(ReportPage, TextIsEscapedWhereverItStands)
{
    const std::string page = PageOf(SmallReport());
    EXPECT_THAT(page, HasSubstr("1. take &lt;1&gt; &amp; &quot;\xC3\xA9t\xC3\xA9&quot;.wav"));
    EXPECT_THAT(page, HasSubstr("score &lt;112&gt;"));
    EXPECT_THAT(page, Not(HasSubstr("<1>")));
    EXPECT_THAT(page, Not(HasSubstr("<112>")));
}

TEST(ReportPage, NeedsNothingElse)
{
    const std::string page = PageOf(SmallReport());
    for (const std::string reference : {"<script", "<link", "<img", "src=", "href=", "url(", "@import"})
    {
        SCOPED_TRACE(reference);
        EXPECT_THAT(page, Not(HasSubstr(reference)));
    }
}

TEST(ReportPage, SaysHowEverythingTurnedOutWithASignAndAWord)
{
    const std::string page = PageOf(SmallReport());
    for (const std::string piece : {"aria-hidden=\"true\">\xE2\x9C\x97</span><span class=\"word\">1 of 2 recordings refused.",
                                    "aria-hidden=\"true\">\xE2\x9C\x93</span><span class=\"word\">Accepted",
                                    "<li class=\"bad\">it is empty <span", "<span class=\"fix\">Record it again.</span>",
                                    "<li class=\"warning\">Two voices.", "<li>Phrase, 0.50 s to 1.50 s: score &lt;112&gt;</li>",
                                    "<span class=\"muted\">about half a false alarm per hour</span>",
                                    "<p class=\"muted\">length 2.00 s</p>", "<dt>Language</dt><dd>1033 (en-US)</dd>"})
    {
        EXPECT_THAT(page, HasSubstr(piece));
    }
    EXPECT_THAT(page, Not(HasSubstr("secret")));
}

TEST(ReportPage, AnErrorIsSaidWithWhatWasFoundBeforeIt)
{
    Report report = SmallReport();
    report.verdict.clear();
    report.error = Problem{"Training failed.", "Record more."};
    const std::string page = PageOf(report);
    EXPECT_THAT(page, HasSubstr("<span class=\"word\">Training failed."));
    EXPECT_THAT(page, HasSubstr("<li class=\"bad\">Training failed. <span class=\"fix\">Record more.</span>"));
    EXPECT_THAT(page, HasSubstr("2. b.wav"));
}

TEST(ReportPage, PlacesStandInTheOrderOfTheRecording)
{
    Report report = SmallReport();
    report.results[0].picture.marks = {{Mark::Kind::Phrase, 1.0, 1.5}, {Mark::Kind::NearMiss, 0.2, 0.4}};
    EXPECT_THAT(PageOf(report), HasSubstr("<li>Near miss, 0.20 s to 0.40 s</li>\n<li>Phrase, 1.00 s to 1.50 s</li>"));
}

TEST(ReportPage, CellsCarryTheirColumnForNarrowPages)
{
    EXPECT_THAT(PageOf(SmallReport()), HasSubstr("<td data-column=\"Length\"><span>2.00 s</span></td>"));
}

TEST(ReportPage, PartsAreATableAndThoseWithAPictureACloseUp)
{
    Report report;
    Entry file{"evening.wav"};
    Entry hit{"0:01.00", "detected", Tone::Good, {{"score", 150, "score", "150.0"}}};
    hit.picture.seconds = 1.0;
    file.parts = {hit, {"0:02.00", "near miss"}};
    report.results = {file};
    const std::string page = PageOf(report);
    EXPECT_THAT(page, HasSubstr("<td data-column=\"Score\"><span>150.0</span></td>"));
    EXPECT_THAT(page, HasSubstr("<h3>0:01.00, detected</h3>"));
    EXPECT_THAT(page, Not(HasSubstr("<h3>0:02.00")));
    ExpectWellFormed(page);
}

TEST(ReportPage, ADayWithThousandsOfNearMissesStaysSmall)
{
    Report report;
    Entry file{"day.wav"};
    file.picture.seconds = 86400.0;
    file.picture.wave = WaveOf(std::vector<float>(16000, 0.5F));
    for (std::size_t i = 0; i < 30'000; ++i)
    {
        const double at = 2.0 * static_cast<double>(i);
        file.picture.marks.push_back({Mark::Kind::NearMiss, at, at + 1.0, "score 90", 90.0});
        file.parts.push_back({"place", "near miss"});
    }
    report.results = {file};
    const std::string page = PageOf(report);
    EXPECT_LT(page.size(), 700'000U);
    EXPECT_THAT(page, HasSubstr("And 28000 more."));
    EXPECT_THAT(page, HasSubstr("30000 places"));
    ExpectWellFormed(page);
}

TEST(ReportPage, TheSameReportGivesTheSameBytes)
{
    EXPECT_EQ(PageOf(SmallReport()), PageOf(SmallReport()));
}

} // namespace ReportPageTests

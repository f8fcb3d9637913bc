#include "console/pages/ReportText.h"

#include <gtest/gtest.h>

namespace ReportTextTests
{

using namespace velox::console;

std::string TextOf(const Report& report, bool everything = false)
{
    return ReportText(report, false, everything);
}

TEST(ReportText, AnEntryTellsItsStatusItsReasonsAndItsFacts)
{
    Report report;
    report.results = {{"a.wav",
                       "refused",
                       Tone::Bad,
                       {{"seconds", 1.5, "length", "1.50 s"}, {"hidden", 1}, {"", {}, "", "converted from 44.1 kHz"}},
                       {{Tone::Bad, "TooQuiet", "too quiet", "Come closer."}, {Tone::Note, "", "worth knowing", ""}}}};
    EXPECT_EQ(TextOf(report), "refused  a.wav\n"
                              "    too quiet\n"
                              "    fix: Come closer.\n"
                              "    note: worth knowing\n"
                              "    length 1.50 s, converted from 44.1 kHz\n");
}

TEST(ReportText, AWarningsRemarkDoesNotSayAgainThatItIsOne)
{
    Report report;
    report.results = {{"odd", "warning", Tone::Warning, {}, {{Tone::Warning, "", "It is ignored.", ""}}}};
    EXPECT_EQ(TextOf(report), "warning  odd\n    It is ignored.\n");
}

TEST(ReportText, PartsAreATableWhoseColumnsLineUp)
{
    Report report;
    Entry file{"evening.wav"};
    file.parts = {
        {"0:01.00", "detected", Tone::Good, {{"score", 152, "score", "152.0"}, {"", {}, "model", "d\xC3\xA9j\xC3\xA0"}}},
        {"1:02:03.00", "near miss", Tone::Bad, {{"score", 9, "score", "9.0"}, {"", {}, "model", "b"}, {"", {}, "more", "c"}}}};
    report.results = {file};
    EXPECT_EQ(TextOf(report), "evening.wav\n"
                              "                           Score  Model  More\n"
                              "    0:01.00     detected   152.0  d\xC3\xA9j\xC3\xA0\n"
                              "  ! 1:02:03.00  near miss  9.0    b      c\n");
}

TEST(ReportText, FactsAndRemarksFollowTheResults)
{
    Report report;
    report.results = {{"a.wav"}};
    report.facts = {{"model", "user.model", "model", "user.model"}, {"bytes", 12}};
    report.remarks = {{Tone::Warning, "", "odd", "Look."}, {Tone::Bad, "", "worse", ""}};
    EXPECT_EQ(TextOf(report), "a.wav\nModel:         user.model\nwarning: odd\nfix: Look.\nworse\n");
}

TEST(ReportText, DetailsAreShownWhenAskedFor)
{
    Report report;
    report.results = {{.title = "fine", .detail = true}};
    EXPECT_EQ(TextOf(report), "");
    EXPECT_EQ(TextOf(report, true), "fine\n");
}

TEST(ReportText, WarningsHaveAColourOfTheirOwn)
{
    Report report;
    report.results = {{"a", "warning", Tone::Warning}, {"b", "error", Tone::Bad}};
    EXPECT_EQ(ReportText(report, true, false), "\x1b[33mwarning\x1b[0m  a\n\x1b[31merror\x1b[0m  b\n");
}

} // namespace ReportTextTests

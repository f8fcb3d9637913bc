#include "evaluation/Report.h"

#include <gmock/gmock.h>

namespace ReportTests
{

using namespace velox::evaluation;
using testing::HasSubstr;

Share Of(int counted, int all)
{
    return {counted, all};
}

TEST(Report, AShareIsAPercentage)
{
    Share share;
    share.Add(true);
    share.Add(false);
    share.Join(Of(0, 2));
    EXPECT_EQ(share.Percent(), 25.0);
}

TEST(Report, AnEmptyGroupIsNeverReached)
{
    EXPECT_EQ(Share().Percent(), 100.0);
    Report report;
    report.Add("missed", Share(), {5.0});
    EXPECT_THAT(report.Table(), HasSubstr("\n| missed | 100 | 100 % | 0 to 100 | 0 of 0 | 5 | no |\n"));
}

TEST(Report, TheWorstOfTheRunsCounts)
{
    Report report;
    report.Add("missed", Of(1, 10), {5.0});
    report.Add("missed", Of(3, 10), {5.0});
    report.Add("missed", Of(2, 10), {5.0});
    EXPECT_EQ(report.Worst("missed"), 30.0);
    EXPECT_EQ(report.Worst("found"), std::nullopt);
}

TEST(Report, ARowHasTheRunsTheLargestWithItsIntervalTheGoalAndTheCases)
{
    Report report;
    report.Add("missed", Of(1, 10), {5.0});
    report.Add("seconds", 1.5, {}, "s");
    report.Add("missed", Of(0, 20), {5.0});
    report.Add("bytes", 0.0, {0.0}, "");
    const std::string table = report.Table();
    EXPECT_THAT(table, HasSubstr("\n| missed | 10, 0 | 10 % | 0.2529 to 44.5 | 1 of 10 | 5 | no |\n"));
    EXPECT_THAT(table, HasSubstr("\n| seconds | 1.5 | 1.5 s |  |  |  |  |\n"));
    EXPECT_THAT(table, HasSubstr("\n| bytes | 0 | 0  |  |  | 0 | yes |\n"));
    EXPECT_LT(table.find("missed"), table.find("seconds")) << "the order of the first figures";
}

TEST(Report, ARateMayBeTooLowToo)
{
    Report report;
    report.AddRate("alarms", 1, 4.0, {1.0, 0.2});
    report.AddRate("silent", 2, 4.0, {1.0, 0.2});
    report.AddRate("silent", 0, 4.0, {1.0, 0.2});
    EXPECT_THAT(report.Table(), HasSubstr("\n| alarms | 0.25 | 0.25 /h | 0.006329 to 1.393 | 1 in 4 h | 0.2 to 1 | yes |\n"));
    EXPECT_THAT(report.Table(), HasSubstr("\n| silent | 0.5, 0 | 0.5 /h | 0.06055 to 1.806 | 2 in 4 h | 0.2 to 1 | no |\n"));
}

TEST(Report, NotesAreLines)
{
    Report report;
    EXPECT_EQ(report.Notes(), "");
    report.Note("a");
    report.Note("b");
    EXPECT_EQ(report.Notes(), "a\nb\n");
}

} // namespace ReportTests

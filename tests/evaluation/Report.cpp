#include "evaluation/Report.h"

#include <gmock/gmock.h>

using namespace velox::evaluation;
using testing::HasSubstr;

namespace
{

Share Of(int counted, int all)
{
    return {counted, all};
}

} // namespace

TEST(Report, AShareIsAPercentage)
{
    Share share;
    EXPECT_EQ(share.Percent(), 0.0);
    share.Add(true);
    share.Add(false);
    share.Add(false);
    share.Add(false);
    EXPECT_EQ(share.Percent(), 25.0);
}

TEST(Report, TheWorstOfTheRunsCounts)
{
    Report report;
    report.Add("missed", Of(1, 10), 5.0);
    report.Add("missed", Of(3, 10), 5.0);
    report.Add("missed", Of(2, 10), 5.0);
    EXPECT_EQ(report.Worst("missed"), 30.0);
    EXPECT_EQ(report.Worst("found"), std::nullopt);
}

TEST(Report, ARowHasTheRunsTheWorstTheGoalAndTheCases)
{
    Report report;
    report.Add("missed", Of(1, 10), 5.0);
    report.Add("seconds", 1.5, -1.0, "s");
    report.Add("missed", Of(0, 20), 5.0);
    report.Add("alarms", 0.0, 0.0, "");
    const std::string table = report.Table();
    EXPECT_THAT(table, HasSubstr("\n| missed | 10, 0 | 10 % | 5 | no | 1 of 30 |\n"));
    EXPECT_THAT(table, HasSubstr("\n| seconds | 1.5 | 1.5 s |  |  |  |\n"));
    EXPECT_THAT(table, HasSubstr("\n| alarms | 0 | 0  | 0 | yes |  |\n"));
    EXPECT_LT(table.find("missed"), table.find("seconds")) << "the order of the first figures";
}

TEST(Report, NotesAreLines)
{
    Report report;
    EXPECT_EQ(report.Notes(), "");
    report.Note("a");
    report.Note("b");
    EXPECT_EQ(report.Notes(), "a\nb\n");
}

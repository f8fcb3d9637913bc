#include "console/languages/MissEstimate.h"

#include "engine/base/CountInterval.h"

#include <gmock/gmock.h>

#include <array>

namespace MissEstimateTests
{

using namespace velox::console;

// Where the thresholds lie: 100 is half an alarm per hour, ten more are e times fewer.
constexpr std::array Scores{60.0F, 99.0F, 101.0F, 150.0F};
constexpr std::size_t Voices = 6;

Report ReportAt(double alarmsPerHour, std::size_t voices = Voices)
{
    Report report;
    AddMisses(Scores, voices, alarmsPerHour, &report);
    return report;
}

TEST(MissEstimate, FewerFalseAlarmsAreMoreMisses)
{
    for (const auto& [rate, missed] : {std::pair{0.5, 2}, std::pair{0.6, 1}, std::pair{0.4, 3}})
    {
        const Report report = ReportAt(rate);
        ASSERT_FALSE(report.facts.empty());
        EXPECT_EQ(report.facts[0].key, "missed");
        EXPECT_EQ(report.facts[0].value, Value(missed)) << rate;
    }
}

TEST(MissEstimate, TheTextTellsTheInterval)
{
    const velox::engine::CountInterval share = velox::engine::ShareFromCount(2, 4);
    EXPECT_THAT(ReportAt(0.5).facts[0].text, testing::StartsWith("2 of 4 takes of 6 voices; that leaves 6.8 % to 93.2 % open"));
    EXPECT_NEAR(share.least, 0.068, 0.001);
}

TEST(MissEstimate, TheChartHasTheIntervalsOfEveryRate)
{
    const Chart chart = ReportAt(0.5).chart.value();
    EXPECT_EQ(chart.marked, 0.5);
    ASSERT_EQ(chart.points.size(), 10U);
    EXPECT_EQ(chart.points.front().x, 0.01);
    EXPECT_EQ(chart.points.back().x, 10.0);
    EXPECT_EQ(chart.points.front().y, 75.0);
    EXPECT_EQ(chart.points.back().y, 25.0);
    for (const Chart::Point& point : chart.points)
    {
        const velox::engine::CountInterval share = velox::engine::ShareFromCount(std::lround(point.y / 25.0), 4);
        EXPECT_DOUBLE_EQ(point.least, 100.0 * share.least);
        EXPECT_DOUBLE_EQ(point.most, 100.0 * share.most);
    }
    EXPECT_FALSE(ReportAt(50.0).chart->marked.has_value());
}

TEST(MissEstimate, VeryFewVoicesTellNothing)
{
    const Report report = ReportAt(0.5, Voices - 1);
    EXPECT_TRUE(report.facts.empty());
    EXPECT_FALSE(report.chart.has_value());
    ASSERT_EQ(report.remarks.size(), 1U);
    EXPECT_EQ(report.remarks[0].code, "NoEstimate");
}

} // namespace MissEstimateTests

#include "evaluation/CurveChart.h"

#include <gmock/gmock.h>

namespace CurveChartTests
{

using namespace velox::evaluation;
using testing::HasSubstr;

std::size_t CountOf(const std::string& text, const std::string& piece)
{
    std::size_t count = 0;
    for (std::size_t at = text.find(piece); at != std::string::npos; at = text.find(piece, at + 1))
    {
        ++count;
    }
    return count;
}

TEST(CurveChart, EveryScoreIsAThreshold)
{
    const Curve curve = MakeCurve("clean", {90.0F, 50.0F}, {70.0F}, 0.5);
    EXPECT_EQ(curve.name, "clean");
    const std::vector<std::pair<double, double>> expected{{0.0, 50.0}, {2.0, 50.0}, {2.0, 0.0}}; // from 90, from 70, from 50 on
    ASSERT_EQ(curve.points.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i)
    {
        EXPECT_EQ(curve.points[i].alarmsPerHour, expected[i].first) << i;
        EXPECT_EQ(curve.points[i].missedPercent, expected[i].second) << i;
    }
}

TEST(CurveChart, ADrawingHasALineAndANameForEachCurve)
{
    const std::string svg = DrawCurves("a title", {{"clean", {{1.0, 10.0}}}, {"noisy", {{10.0, 20.0}, {100.0, 0.0}}}});
    EXPECT_TRUE(svg.starts_with("<svg xmlns="));
    EXPECT_TRUE(svg.ends_with("</svg>\n"));
    EXPECT_EQ(CountOf(svg, "<polyline"), 2U);
    for (const char* text : {">a title<", ">clean<", ">noisy<", ">false alarms per hour<", ">missed, %<"})
    {
        EXPECT_THAT(svg, HasSubstr(text));
    }
}

TEST(CurveChart, TheAxisOfAlarmsIsLogarithmicAndWhatLeavesThePictureIsDrawnOnItsEdge)
{
    // From 60 at 0.1 alarms to 470 at 100, from 370 at no misses to 40 at 40 %.
    const std::string svg = DrawCurves("", {{"", {{0.0, 0.0}, {1.0, 20.0}, {1000.0, 100.0}}}});
    EXPECT_THAT(svg, HasSubstr("points=\"60.0,370.0 196.7,205.0 470.0,40.0 \""));
}

} // namespace CurveChartTests

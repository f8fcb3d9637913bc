#include "evaluation/CurveChart.h"

#include "evaluation/Format.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace velox::evaluation
{

namespace
{

constexpr double Width = 640.0;
constexpr double Height = 420.0;
constexpr double Left = 60.0;
constexpr double Right = 470.0;
constexpr double Top = 40.0;
constexpr double Bottom = 370.0;
constexpr double LeastAlarms = 0.1;
constexpr double MostAlarms = 100.0;
constexpr double MostMissed = 40.0;
constexpr std::array Colours = {"#1b6ca8", "#c8553d", "#3a7d44", "#8a5a9e", "#b8860b", "#444444",
                                "#17a2a2", "#d16ba5", "#7a7a7a", "#5b8c00", "#a0522d"};

double Across(double alarmsPerHour)
{
    const double bounded = std::clamp(alarmsPerHour, LeastAlarms, MostAlarms);
    return Left + (Right - Left) * std::log(bounded / LeastAlarms) / std::log(MostAlarms / LeastAlarms);
}

double Down(double missedPercent)
{
    return Bottom - (Bottom - Top) * std::min(missedPercent, MostMissed) / MostMissed;
}

std::string Attribute(const std::string& name, double value)
{
    return " " + name + "=\"" + Fixed(value, 1) + "\"";
}

std::string Text(double x, double y, const std::string& text, const std::string& anchor)
{
    return "<text" + Attribute("x", x) + Attribute("y", y) + " text-anchor=\"" + anchor + "\">" + text + "</text>\n";
}

std::string Line(double x1, double y1, double x2, double y2, const std::string& colour)
{
    return "<line" + Attribute("x1", x1) + Attribute("y1", y1) + Attribute("x2", x2) + Attribute("y2", y2) + " stroke=\"" +
           colour + "\"/>\n";
}

std::string Axes()
{
    std::string svg;
    for (const double alarms : {0.1, 0.5, 1.0, 10.0, 100.0})
    {
        svg += Line(Across(alarms), Top, Across(alarms), Bottom, "#dddddd");
        svg += Text(Across(alarms), Bottom + 16.0, Short(alarms), "middle");
    }
    for (double missed = 0.0; missed <= MostMissed; missed += 10.0)
    {
        svg += Line(Left, Down(missed), Right, Down(missed), "#dddddd");
        svg += Text(Left - 6.0, Down(missed) + 4.0, Short(missed), "end");
    }
    svg += Text((Left + Right) / 2.0, Height - 12.0, "false alarms per hour", "middle");
    return svg + Text(Left, Top - 8.0, "missed, %", "middle");
}

} // namespace

Curve MakeCurve(const std::string& name, const std::vector<float>& clipScores, const std::vector<float>& backgroundScores,
                double backgroundHours)
{
    std::vector<float> thresholds = clipScores;
    thresholds.insert(thresholds.end(), backgroundScores.begin(), backgroundScores.end());
    std::sort(thresholds.rbegin(), thresholds.rend());
    Curve curve{name, {}};
    for (const float threshold : thresholds)
    {
        const auto below = [threshold](float score) {
            return score < threshold;
        };
        const auto missed = std::count_if(clipScores.begin(), clipScores.end(), below);
        const auto alarms = static_cast<double>(backgroundScores.size()) -
                            static_cast<double>(std::count_if(backgroundScores.begin(), backgroundScores.end(), below));
        curve.points.push_back(
            {alarms / backgroundHours, 100.0 * static_cast<double>(missed) / static_cast<double>(clipScores.size())});
    }
    return curve;
}

std::string DrawCurves(const std::string& title, const std::vector<Curve>& curves)
{
    const std::string size = Attribute("width", Width) + Attribute("height", Height);
    std::string svg = "<svg xmlns=\"http://www.w3.org/2000/svg\"" + size + " font-family=\"sans-serif\" font-size=\"12\">\n" +
                      "<rect" + size + " fill=\"white\"/>\n";
    svg += Text((Left + Right) / 2.0, 22.0, title, "middle") + Axes();
    for (std::size_t i = 0; i < curves.size(); ++i)
    {
        const std::string colour = Colours[i % Colours.size()];
        std::string points;
        for (const Curve::Point& point : curves[i].points)
        {
            points += Fixed(Across(point.alarmsPerHour), 1) + "," + Fixed(Down(point.missedPercent), 1) + " ";
        }
        svg += "<polyline points=\"" + points + "\" fill=\"none\" stroke=\"" + colour + "\" stroke-width=\"1.5\"/>\n";
        const double y = Top + 18.0 * static_cast<double>(i);
        svg += Line(Right + 15.0, y, Right + 35.0, y, colour) + Text(Right + 42.0, y + 4.0, curves[i].name, "start");
    }
    return svg + "</svg>\n";
}

} // namespace velox::evaluation

#include "CurveChart.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <format>

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

std::string Text(double x, double y, const std::string& text, const std::string& anchor)
{
    return std::format("<text x=\"{:.1f}\" y=\"{:.1f}\" text-anchor=\"{}\">{}</text>\n", x, y, anchor, text);
}

std::string Line(double x1, double y1, double x2, double y2, const std::string& colour)
{
    return std::format("<line x1=\"{:.1f}\" y1=\"{:.1f}\" x2=\"{:.1f}\" y2=\"{:.1f}\" stroke=\"{}\"/>\n", x1, y1, x2, y2, colour);
}

std::string Axes()
{
    std::string svg;
    for (const double alarms : {0.1, 0.5, 1.0, 10.0, 100.0})
    {
        svg += Line(Across(alarms), Top, Across(alarms), Bottom, "#dddddd");
        svg += Text(Across(alarms), Bottom + 16.0, std::format("{:g}", alarms), "middle");
    }
    for (double missed = 0.0; missed <= MostMissed; missed += 10.0)
    {
        svg += Line(Left, Down(missed), Right, Down(missed), "#dddddd");
        svg += Text(Left - 6.0, Down(missed) + 4.0, std::format("{:g}", missed), "end");
    }
    svg += Text((Left + Right) / 2.0, Height - 12.0, "false alarms per hour", "middle");
    svg += std::format("<text transform=\"translate(18 {:.1f}) rotate(-90)\" text-anchor=\"middle\">missed, %</text>\n",
                       (Top + Bottom) / 2.0);
    return svg;
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
    std::string svg = std::format("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"{0:g}\" height=\"{1:g}\" font-family="
                                  "\"sans-serif\" font-size=\"12\">\n<rect width=\"{0:g}\" height=\"{1:g}\" fill=\"white\"/>\n",
                                  Width, Height);
    svg += Text((Left + Right) / 2.0, 22.0, title, "middle") + Axes();
    for (std::size_t i = 0; i < curves.size(); ++i)
    {
        const std::string colour = Colours[i % Colours.size()];
        std::string points;
        for (const Curve::Point& point : curves[i].points)
        {
            points += std::format("{:.1f},{:.1f} ", Across(point.alarmsPerHour), Down(point.missedPercent));
        }
        svg += std::format("<polyline points=\"{}\" fill=\"none\" stroke=\"{}\" stroke-width=\"1.5\"/>\n", points, colour);
        const double y = Top + 18.0 * static_cast<double>(i);
        svg += Line(Right + 15.0, y, Right + 35.0, y, colour) + Text(Right + 42.0, y + 4.0, curves[i].name, "start");
    }
    return svg + "</svg>\n";
}

} // namespace velox::evaluation

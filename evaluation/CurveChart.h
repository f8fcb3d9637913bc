#pragma once

#include <string>
#include <vector>

namespace velox::evaluation
{

/// Misses against false alarms per hour, for every threshold.
struct Curve
{
    struct Point
    {
        double alarmsPerHour = 0.0;
        double missedPercent = 0.0;
    };

    std::string name;
    std::vector<Point> points; ///< of falling thresholds
};

/// @param clipScores        best score in each clip with the phrase
/// @param backgroundScores  of all detections in background
Curve MakeCurve(const std::string& name, const std::vector<float>& clipScores, const std::vector<float>& backgroundScores,
                double backgroundHours);

/// Curves as SVG. The axis of false alarms is logarithmic; what lies below its first mark is drawn on it.
std::string DrawCurves(const std::string& title, const std::vector<Curve>& curves);

} // namespace velox::evaluation

#include "console/pages/RecordingFigure.h"

#include "console/pages/Markup.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>

namespace velox::console
{

namespace
{

/// The drawings are this wide and this high, and stretched to the page.
constexpr double Width = 1000.0;
constexpr double Height = 100.0;
/// A rectangle without any width is not drawn; the stroke around it has its width on every page.
constexpr double LeastMarkWidth = 0.05;
constexpr std::size_t MostMarksDrawn = 1000;
/// A quiet recording is enlarged until its highest sample reaches this.
constexpr float LeastPeakShown = 0.25F;
constexpr float MostEnlargement = 64.0F;
constexpr double LeastQualityShown = 30.0;
constexpr double QualityStep = 10.0;
constexpr double LeastScoreShown = 20.0;
constexpr double ScoreStep = 20.0;

constexpr std::array MarkKinds{ReportMark::Kind::Speech, ReportMark::Kind::Phrase, ReportMark::Kind::NearMiss,
                               ReportMark::Kind::Clipped, ReportMark::Kind::Fault};

std::string MarkClass(ReportMark::Kind kind)
{
    switch (kind)
    {
    case ReportMark::Kind::Speech:
        return "speech";
    case ReportMark::Kind::Phrase:
        return "phrase";
    case ReportMark::Kind::NearMiss:
        return "near";
    case ReportMark::Kind::Clipped:
        return "clipped";
    default:
        return "fault";
    }
}

std::string Clock(double exactSeconds, int decimals)
{
    const double precision = std::pow(10.0, decimals);
    const double seconds = std::round(exactSeconds * precision) / precision;
    const auto minutes = static_cast<int64_t>(seconds / 60.0);
    const double rest = seconds - 60.0 * static_cast<double>(minutes);
    const int width = decimals == 0 ? 2 : 3 + decimals;
    return minutes < 60 ? fmt::format("{}:{:0{}.{}f}", minutes, rest, width, decimals)
                        : fmt::format("{}:{:02}:{:0{}.{}f}", minutes / 60, minutes % 60, rest, width, decimals);
}

/// A step of the time axis, so that it has at most six.
double TimeStep(double seconds)
{
    constexpr double MostMarks = 6.0;
    constexpr std::array RoundSteps{0.1, 0.2, 0.5, 1.0, 2.0, 5.0, 10.0, 20.0, 60.0, 120.0, 300.0, 600.0, 1200.0, 3600.0};
    for (const double step : RoundSteps)
    {
        if (seconds / step <= MostMarks)
        {
            return step;
        }
    }
    return 3600.0 * std::ceil(seconds / 3600.0 / MostMarks);
}

/// Draws one recording; a panel is a drawing with the values of its axis at its left.
class Figure
{
public:
    Figure(const ReportRecording& drawn, std::size_t drawnNumber)
        : recording(drawn), number(drawnNumber), step(TimeStep(drawn.seconds))
    {
    }

    std::string Draw() const
    {
        return Element("div", "class=\"figure\"", Lanes() + Sound() + Quality() + Score() + TimeAxis());
    }

private:
    double Across(double second) const
    {
        return std::clamp(second / recording.seconds, 0.0, 1.0) * Width;
    }

    std::string Lanes() const;
    std::string Lane(ReportMark::Kind kind) const;
    std::string MarkRectangle(const ReportMark& mark) const;
    std::string Sound() const;
    std::string Quality() const;
    std::string Score() const;
    std::string TimeAxis() const;

    std::string Grid() const;
    std::string Shades() const;
    /// A line through ranges that lie at equal distances.
    std::string Line(const std::vector<SampleRange>& ranges, double firstSecond, double secondsPerRange, double least,
                     double most) const;
    std::string CurveLine(const ReportCurve& curve, double most) const;
    std::string HighestText(const ReportCurve& curve, std::string_view unit) const;

    struct AxisValue
    {
        double value;
        std::string text;
    };
    struct Panel
    {
        std::string classes;
        std::string caption;
        std::string description;
        double least;
        double most;
        std::vector<AxisValue> axis;
    };
    std::string Draw(const Panel& panel, std::string_view shapes) const;
    std::string Drawing(std::string_view classes, std::string_view title, std::string_view description,
                        std::string_view shapes) const;

    const ReportRecording& recording;
    std::size_t number;
    double step;
};

std::string Figure::Drawing(std::string_view classes, std::string_view title, std::string_view description,
                            std::string_view shapes) const
{
    const std::string id = fmt::format("r{}-{}", number, classes);
    return fmt::format("<svg xmlns=\"http://www.w3.org/2000/svg\" class=\"{}\" viewBox=\"0 0 {:.0f} {:.0f}\" "
                       "preserveAspectRatio=\"none\" role=\"img\" aria-labelledby=\"{}-title {}-desc\">\n"
                       "<title id=\"{}-title\">{}</title>\n<desc id=\"{}-desc\">{}</desc>\n{}</svg>\n",
                       classes, Width, Height, id, id, id, Escaped(title), id, Escaped(description), shapes);
}

std::string Figure::Draw(const Panel& panel, std::string_view shapes) const
{
    std::string axis;
    for (const AxisValue& value : panel.axis)
    {
        const double top = 100.0 * (panel.most - value.value) / (panel.most - panel.least);
        axis += fmt::format("<span style=\"top:{:.1f}%\">{}</span>", top, Escaped(value.text));
    }
    return TextElement("p", "caption", panel.caption) + Element("div", "class=\"axis\" aria-hidden=\"true\"", axis) +
           Drawing(panel.classes, panel.caption, panel.description, shapes);
}

std::string Figure::Grid() const
{
    std::string lines;
    for (int line = 1; line * step < recording.seconds; ++line)
    {
        lines += fmt::format("<line class=\"grid\" x1=\"{0:.1f}\" x2=\"{0:.1f}\" y1=\"0\" y2=\"{1:.0f}\"/>\n",
                             Across(line * step), Height);
    }
    return lines;
}

std::string Figure::MarkRectangle(const ReportMark& mark) const
{
    const double begin = Across(mark.begin);
    return fmt::format("<rect class=\"{}\" x=\"{:.2f}\" y=\"0\" width=\"{:.2f}\" height=\"{:.0f}\"><title>{}</title></rect>\n",
                       MarkClass(mark.kind), begin, std::max(LeastMarkWidth, Across(mark.end) - begin), Height,
                       Escaped(PlaceText(mark.begin, mark.end) + (mark.text.empty() ? "" : ": " + mark.text)));
}

std::string Figure::Lane(ReportMark::Kind kind) const
{
    std::string shapes;
    std::size_t count = 0;
    for (const ReportMark& mark : recording.marks)
    {
        if (mark.kind == kind && ++count <= MostMarksDrawn)
        {
            shapes += MarkRectangle(mark);
        }
    }
    if (count == 0)
    {
        return {};
    }
    const std::string description =
        fmt::format("{} {} of {}", count, count == 1 ? "place" : "places", PlaceText(0.0, recording.seconds));
    return TextElement("span", "lane-name", MarkName(kind)) +
           Drawing("lane-" + MarkClass(kind), MarkName(kind), description, Grid() + shapes);
}

std::string Figure::Lanes() const
{
    std::string lanes;
    for (const ReportMark::Kind kind : MarkKinds)
    {
        lanes += Lane(kind);
    }
    return lanes;
}

/// Where the phrase lies, behind the curves.
std::string Figure::Shades() const
{
    std::string shades;
    std::size_t count = 0;
    for (const ReportMark& mark : recording.marks)
    {
        if (mark.kind == ReportMark::Kind::Phrase && ++count <= MostMarksDrawn)
        {
            shades += fmt::format("<rect class=\"shade\" x=\"{:.2f}\" y=\"0\" width=\"{:.2f}\" height=\"{:.0f}\"/>\n",
                                  Across(mark.begin), std::max(0.0, Across(mark.end) - Across(mark.begin)), Height);
        }
    }
    return shades;
}

std::string Figure::Line(const std::vector<SampleRange>& ranges, double firstSecond, double secondsPerRange, double least,
                         double most) const
{
    std::string path;
    char command = 'M';
    const auto add = [&](double x, float value) {
        const double share = std::clamp((most - static_cast<double>(value)) / (most - least), 0.0, 1.0);
        path += fmt::format("{}{:.1f} {:.1f}", command, x, share * Height);
        command = 'L';
    };
    for (std::size_t i = 0; i < ranges.size(); ++i)
    {
        if (std::isnan(ranges[i].most))
        {
            command = 'M';
            continue;
        }
        const double x = Across(firstSecond + static_cast<double>(i) * secondsPerRange);
        add(x, ranges[i].most);
        if (ranges[i].least < ranges[i].most)
        {
            add(x, ranges[i].least);
        }
    }
    return fmt::format("<path class=\"curve\" d=\"{}\"/>\n", path);
}

std::string Figure::CurveLine(const ReportCurve& curve, double most) const
{
    const std::vector<SampleRange> ranges = WaveOf(curve.values);
    const double secondsPerRange =
        curve.secondsPerValue * static_cast<double>(curve.values.size()) / static_cast<double>(ranges.size());
    return Line(ranges, curve.firstSecond, secondsPerRange, 0.0, most);
}

/// The curve's highest value, nothing when it has none.
std::optional<std::size_t> HighestOf(const ReportCurve& curve)
{
    std::optional<std::size_t> highest;
    for (std::size_t i = 0; i < curve.values.size(); ++i)
    {
        if (!std::isnan(curve.values[i]) && (!highest || curve.values[i] > curve.values[*highest]))
        {
            highest = i;
        }
    }
    return highest;
}

std::string Figure::HighestText(const ReportCurve& curve, std::string_view unit) const
{
    const std::optional<std::size_t> highest = HighestOf(curve);
    if (!highest)
    {
        return "no value";
    }
    const double at = curve.firstSecond + static_cast<double>(*highest) * curve.secondsPerValue;
    return fmt::format("highest {:.0f}{} at {}", curve.values[*highest], unit, PlaceText(at, at));
}

std::string Figure::Sound() const
{
    if (recording.wave.empty())
    {
        return {};
    }
    float peak = 0.0F;
    for (const SampleRange& range : recording.wave)
    {
        peak = std::fmax(peak, std::fmax(-range.least, range.most));
    }
    float enlarged = 1.0F;
    while (peak * enlarged < LeastPeakShown && enlarged < MostEnlargement)
    {
        enlarged *= 2.0F;
    }
    const double shown = 1.0 / static_cast<double>(enlarged);
    const std::string scale = enlarged > 1.0F ? fmt::format("drawn {:.0f} times as high", enlarged) : "full scale is 1";
    const std::string level =
        peak > 0.0F ? fmt::format("highest sample {:.0f} dB", 20.0 * std::log10(static_cast<double>(peak))) : "silent";
    const double perRange = recording.seconds / static_cast<double>(recording.wave.size());
    return Draw({"sound",
                 fmt::format("Sound, {}: {}", scale, level),
                 PlaceText(0.0, recording.seconds),
                 -shown,
                 shown,
                 {{shown, fmt::format("{:.2g}", shown)}, {0.0, "0"}, {-shown, fmt::format("−{:.2g}", shown)}}},
                Shades() + Grid() + Line(recording.wave, 0.5 * perRange, perRange, -shown, shown));
}

std::string Figure::Quality() const
{
    const std::optional<std::size_t> highest = HighestOf(recording.quality);
    if (!highest)
    {
        return {};
    }
    const auto value = static_cast<double>(recording.quality.values[*highest]);
    const double most = std::max(LeastQualityShown, QualityStep * std::ceil(value / QualityStep));
    const std::string text = HighestText(recording.quality, " dB");
    return Draw(
        {"quality", "Quality, dB above the noise: " + text, text, 0.0, most, {{most, fmt::format("{:.0f}", most)}, {0.0, "0"}}},
        Shades() + Grid() + CurveLine(recording.quality, most));
}

std::string Figure::Score() const
{
    const std::optional<std::size_t> highest = HighestOf(recording.score);
    if (!highest)
    {
        return {};
    }
    const auto value = static_cast<double>(recording.score.values[*highest]);
    const double most =
        ScoreStep * std::ceil(std::max({LeastScoreShown, value, 1.2 * recording.threshold.value_or(0.0)}) / ScoreStep);
    std::string text = HighestText(recording.score, "");
    std::string line;
    std::vector<AxisValue> axis{{most, fmt::format("{:.0f}", most)}, {0.0, "0"}};
    if (recording.threshold)
    {
        text += fmt::format("; threshold {:g}, dashed", *recording.threshold);
        line = fmt::format("<line class=\"threshold\" x1=\"0\" x2=\"{0:.0f}\" y1=\"{1:.1f}\" y2=\"{1:.1f}\"/>\n", Width,
                           Height * (most - *recording.threshold) / most);
        axis.push_back({*recording.threshold, fmt::format("{:g}", *recording.threshold)});
    }
    return Draw({"score", "Score of the phrase that ends here: " + text, text, 0.0, most, axis},
                Shades() + Grid() + line + CurveLine(recording.score, most));
}

std::string Figure::TimeAxis() const
{
    std::string ticks;
    for (int tick = 0; tick * step <= recording.seconds * 1.0001; ++tick)
    {
        const double second = tick * step;
        const std::string text =
            recording.seconds < 60.0 ? fmt::format("{:.{}f} s", second, step < 1.0 ? 1 : 0) : Clock(second, 0);
        const double left = 100.0 * Across(second) / Width;
        // Labels at the ends stay inside.
        const std::string_view end = left < 3.0 ? " class=\"first\"" : left > 95.0 ? " class=\"last\"" : "";
        ticks += fmt::format("<span{} style=\"left:{:.2f}%\">{}</span>", end, left, text);
    }
    return Element("div", "class=\"time\" aria-hidden=\"true\"", ticks);
}

} // namespace

std::string MarkName(ReportMark::Kind kind)
{
    switch (kind)
    {
    case ReportMark::Kind::Speech:
        return "Speech";
    case ReportMark::Kind::Phrase:
        return "Phrase";
    case ReportMark::Kind::NearMiss:
        return "Near miss";
    case ReportMark::Kind::Clipped:
        return "Clipped";
    default:
        return "Fault";
    }
}

std::string PlaceText(double begin, double end)
{
    const auto text = [end](double second) {
        return end < 60.0 ? fmt::format("{:.2f} s", second) : Clock(second, 1);
    };
    return end > begin ? text(begin) + " to " + text(end) : text(begin);
}

std::string RecordingFigure(const ReportRecording& recording, std::size_t number)
{
    return recording.seconds > 0.0 ? Figure(recording, number).Draw() : "";
}

} // namespace velox::console

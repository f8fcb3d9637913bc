#include "console/pages/Figure.h"

#include "console/pages/Escaped.h"
#include "console/text/Wording.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

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

struct MarkKind
{
    Mark::Kind kind;
    const char* name;
    const char* style;
};
constexpr std::array MarkKinds{MarkKind{Mark::Kind::Speech, "Speech", "speech"}, MarkKind{Mark::Kind::Phrase, "Phrase", "phrase"},
                               MarkKind{Mark::Kind::NearMiss, "Near miss", "near"},
                               MarkKind{Mark::Kind::Clipped, "Clipped", "clipped"},
                               MarkKind{Mark::Kind::Fault, "Fault", "fault"}};

const MarkKind& KindOf(Mark::Kind kind)
{
    return *std::ranges::find(MarkKinds, kind, &MarkKind::kind);
}

/// A step of the time axis, so that it has at most six.
double TimeStep(double seconds)
{
    constexpr double MostMarks = 6.0;
    constexpr std::array RoundSteps{0.1, 0.2, 0.5, 1.0, 2.0, 5.0, 10.0, 20.0, 60.0, 120.0, 300.0, 600.0, 1200.0, 3600.0};
    const auto* const found = std::ranges::find_if(RoundSteps, [&](double step) { return seconds / step <= MostMarks; });
    return found != RoundSteps.end() ? *found : 3600.0 * std::ceil(seconds / 3600.0 / MostMarks);
}

struct AxisValue
{
    double value;
    std::string text;
};

/// A drawing with the values of its axis at its left.
struct Panel
{
    std::string style;
    std::string caption;
    std::string description;
    double least;
    double most;
    std::vector<AxisValue> axis;

    double Down(double value) const
    {
        return std::clamp((most - value) / (most - least), 0.0, 1.0) * Height;
    }
};

std::string Drawing(const std::string& id, const std::string& style, const std::string& title, const std::string& description,
                    const std::string& shapes)
{
    return fmt::format("<svg xmlns=\"http://www.w3.org/2000/svg\" class=\"{0}\" viewBox=\"0 0 {1:.0f} {2:.0f}\" "
                       "preserveAspectRatio=\"none\" role=\"img\" aria-labelledby=\"r{3}-{0}-title r{3}-{0}-desc\">\n"
                       "<title id=\"r{3}-{0}-title\">{4}</title>\n<desc id=\"r{3}-{0}-desc\">{5}</desc>\n{6}</svg>\n",
                       style, Width, Height, id, Escaped(title), Escaped(description), shapes);
}

std::string Draw(const Panel& panel, const std::string& id, const std::string& shapes)
{
    std::string axis;
    for (const AxisValue& value : panel.axis)
    {
        axis += fmt::format("<span style=\"top:{:.1f}%\">{}</span>", panel.Down(value.value), Escaped(value.text));
    }
    return fmt::format("<p class=\"caption\">{}</p>\n<div class=\"axis\" aria-hidden=\"true\">{}</div>\n", Escaped(panel.caption),
                       axis) +
           Drawing(id, panel.style, panel.caption, panel.description, shapes);
}

/// The labels of an axis below the drawings; those at the ends stay inside.
std::string Tick(double left, const std::string& text)
{
    const char* end = left < 3.0 ? " class=\"first\"" : left > 95.0 ? " class=\"last\"" : "";
    return fmt::format("<span{} style=\"left:{:.2f}%\">{}</span>", end, left, text);
}

/// Draws one recording.
class Drawer
{
public:
    Drawer(const Picture& drawn, std::string drawnId) : picture(drawn), id(std::move(drawnId)), step(TimeStep(drawn.seconds))
    {
    }

    std::string Draw() const
    {
        return "<div class=\"figure\">" + Lanes() + Sound() + Quality() + Score() + TimeAxis() + "</div>\n";
    }

private:
    double Across(double second) const
    {
        return std::clamp((second - picture.firstSecond) / picture.seconds, 0.0, 1.0) * Width;
    }

    /// The multiples of the step from one time to another, both included.
    std::vector<double> Marks(double begin, double end) const
    {
        std::vector<double> marks;
        const auto last = static_cast<int64_t>(std::floor(end / step));
        for (auto mark = static_cast<int64_t>(std::ceil(begin / step)); mark <= last; ++mark)
        {
            marks.push_back(static_cast<double>(mark) * step);
        }
        return marks;
    }

    std::string Lanes() const;
    std::string Sound() const;
    std::string Quality() const;
    std::string Score() const;
    std::string TimeAxis() const;

    std::string Grid() const;
    std::string Shades() const;
    std::string Stems(const Panel& panel) const;
    /// A line through ranges that lie at equal distances.
    std::string Line(const Panel& panel, const std::vector<SampleRange>& ranges, double firstSecond,
                     double secondsPerRange) const;
    std::string CurveLine(const Panel& panel, const Curve& curve) const;

    const Picture& picture;
    std::string id;
    double step;
};

std::string Drawer::Grid() const
{
    std::string lines;
    const double end = picture.firstSecond + picture.seconds;
    for (const double at : Marks(picture.firstSecond, end))
    {
        if (at <= picture.firstSecond || at >= end)
        {
            continue; // the figure's edges are lines themselves
        }
        lines +=
            fmt::format("<line class=\"grid\" x1=\"{0:.1f}\" x2=\"{0:.1f}\" y1=\"0\" y2=\"{1:.0f}\"/>\n", Across(at), Height);
    }
    return lines;
}

std::string Drawer::Lanes() const
{
    std::string lanes;
    for (const MarkKind& kind : MarkKinds)
    {
        std::string shapes;
        std::size_t count = 0;
        for (const Mark& mark : picture.marks)
        {
            if (mark.kind == kind.kind && ++count <= MostMarksDrawn)
            {
                const double begin = Across(mark.begin);
                shapes += fmt::format(
                    "<rect class=\"{}\" x=\"{:.2f}\" y=\"0\" width=\"{:.2f}\" height=\"{:.0f}\"><title>{}</title></rect>\n",
                    kind.style, begin, std::max(LeastMarkWidth, Across(mark.end) - begin), Height,
                    Escaped(PlaceText(mark.begin, mark.end) + (mark.text.empty() ? "" : ": " + mark.text)));
            }
        }
        if (count > 0)
        {
            const std::string what = Counted(count, "place") + " in " + DurationText(picture.seconds);
            lanes += fmt::format("<span class=\"lane-name\">{}</span>\n", kind.name) +
                     Drawing(id, fmt::format("lane-{}", kind.style), kind.name, what, Grid() + shapes);
        }
    }
    return lanes;
}

/// Where the phrase lies, behind the curves.
std::string Drawer::Shades() const
{
    std::string shades;
    std::size_t count = 0;
    for (const Mark& mark : picture.marks)
    {
        if (mark.kind == Mark::Kind::Phrase && ++count <= MostMarksDrawn)
        {
            shades += fmt::format("<rect class=\"shade\" x=\"{:.2f}\" y=\"0\" width=\"{:.2f}\" height=\"{:.0f}\"/>\n",
                                  Across(mark.begin), std::max(0.0, Across(mark.end) - Across(mark.begin)), Height);
        }
    }
    return shades;
}

/// The scores that were compared, each where its phrase ended.
std::string Drawer::Stems(const Panel& panel) const
{
    std::string stems;
    std::size_t count = 0;
    for (const Mark& mark : picture.marks)
    {
        if (mark.score && ++count <= 2 * MostMarksDrawn)
        {
            stems += fmt::format("<line class=\"stem {0}\" x1=\"{1:.1f}\" x2=\"{1:.1f}\" y1=\"{2:.0f}\" y2=\"{3:.1f}\"/>\n",
                                 KindOf(mark.kind).style, Across(mark.end), Height, panel.Down(*mark.score));
        }
    }
    return stems;
}

std::string Drawer::Line(const Panel& panel, const std::vector<SampleRange>& ranges, double firstSecond,
                         double secondsPerRange) const
{
    std::string path;
    char command = 'M';
    for (std::size_t i = 0; i < ranges.size(); ++i)
    {
        if (std::isnan(ranges[i].most))
        {
            command = 'M';
            continue;
        }
        const double x = Across(firstSecond + static_cast<double>(i) * secondsPerRange);
        path += fmt::format("{}{:.1f} {:.1f}", command, x, panel.Down(static_cast<double>(ranges[i].most)));
        command = 'L';
        if (ranges[i].least < ranges[i].most)
        {
            path += fmt::format("L{:.1f} {:.1f}", x, panel.Down(static_cast<double>(ranges[i].least)));
        }
    }
    return fmt::format("<path class=\"curve\" d=\"{}\"/>\n", path);
}

std::string Drawer::CurveLine(const Panel& panel, const Curve& curve) const
{
    const std::vector<SampleRange> ranges = WaveOf(curve.values);
    return Line(panel, ranges, curve.firstSecond,
                curve.secondsPerValue * static_cast<double>(curve.values.size()) / static_cast<double>(ranges.size()));
}

struct Highest
{
    double value = 0.0;
    double second = 0.0;
};

std::optional<Highest> HighestOf(const Curve& curve)
{
    std::optional<Highest> highest;
    for (std::size_t i = 0; i < curve.values.size(); ++i)
    {
        const auto value = static_cast<double>(curve.values[i]);
        if (!std::isnan(value) && (!highest || value > highest->value))
        {
            highest = {value, curve.firstSecond + static_cast<double>(i) * curve.secondsPerValue};
        }
    }
    return highest;
}

std::string Drawer::Sound() const
{
    if (picture.wave.empty())
    {
        return {};
    }
    float peak = 0.0F;
    for (const SampleRange& range : picture.wave)
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
    const Panel panel{"sound",
                      fmt::format("Sound, {}: {}", scale, level),
                      DurationText(picture.seconds),
                      -shown,
                      shown,
                      {{shown, fmt::format("{:.2g}", shown)}, {0.0, "0"}, {-shown, fmt::format("−{:.2g}", shown)}}};
    const double perRange = picture.seconds / static_cast<double>(picture.wave.size());
    return console::Draw(panel, id,
                         Shades() + Grid() + Line(panel, picture.wave, picture.firstSecond + 0.5 * perRange, perRange));
}

std::string Drawer::Quality() const
{
    const std::optional<Highest> highest = HighestOf(picture.quality);
    if (!highest)
    {
        return {};
    }
    const double most = std::max(30.0, 10.0 * std::ceil(highest->value / 10.0));
    const std::string text = fmt::format("highest {:.0f} dB at {}", highest->value, PlaceText(highest->second, highest->second));
    const Panel panel{"quality", "Quality, dB above the noise: " + text,           text, 0.0,
                      most,      {{most, fmt::format("{:.0f}", most)}, {0.0, "0"}}};
    return console::Draw(panel, id, Shades() + Grid() + CurveLine(panel, picture.quality));
}

std::string Drawer::Score() const
{
    std::optional<Highest> highest = HighestOf(picture.score);
    for (const Mark& mark : picture.marks)
    {
        if (mark.score && (!highest || *mark.score > highest->value))
        {
            highest = {*mark.score, mark.end};
        }
    }
    if (!highest)
    {
        return {};
    }
    const double threshold = picture.threshold.value_or(0.0);
    const double most = 20.0 * std::ceil(std::max({20.0, highest->value, 1.2 * threshold}) / 20.0);
    std::string text = fmt::format("highest {:.0f} at {}", highest->value, PlaceText(highest->second, highest->second));
    Panel panel{"score", {}, {}, 0.0, most, {{most, fmt::format("{:.0f}", most)}, {0.0, "0"}}};
    std::string shapes = Shades() + Grid();
    if (picture.threshold)
    {
        text += fmt::format("; threshold {:g}, dashed", threshold);
        shapes += fmt::format("<line class=\"threshold\" x1=\"0\" x2=\"{0:.0f}\" y1=\"{1:.1f}\" y2=\"{1:.1f}\"/>\n", Width,
                              panel.Down(threshold));
        panel.axis.push_back({threshold, fmt::format("{:g}", threshold)});
    }
    panel.caption = "Score of the phrase that ends here: " + text;
    panel.description = text;
    shapes += picture.score.values.empty() ? "" : CurveLine(panel, picture.score);
    return console::Draw(panel, id, shapes + Stems(panel));
}

std::string Drawer::TimeAxis() const
{
    std::string ticks;
    const double end = picture.firstSecond + picture.seconds;
    for (const double at : Marks(picture.firstSecond, end + picture.seconds * 0.0001))
    {
        const std::string text =
            end < 60.0 ? fmt::format("{:.{}f} s", at, step < 1.0 ? 1 : 0) : ClockText(at, step < 1.0 ? 1 : 0);
        ticks += Tick(100.0 * Across(at) / Width, text);
    }
    return "<div class=\"time\" aria-hidden=\"true\">" + ticks + "</div>\n";
}

} // namespace

std::string MarkName(Mark::Kind kind)
{
    return KindOf(kind).name;
}

std::string Figure(const Picture& picture, const std::string& id)
{
    return picture.seconds > 0.0 ? Drawer(picture, id).Draw() : "";
}

std::string ChartFigure(const Chart& chart)
{
    if (chart.points.size() < 2)
    {
        return {};
    }
    const double first = std::log(chart.points.front().x);
    const double decades = std::log(chart.points.back().x) - first;
    const auto across = [&](double x) {
        return (std::log(x) - first) / decades * Width;
    };
    const Panel panel{
        "chart", chart.title + ": " + chart.yName, chart.title, 0.0, 100.0, {{100.0, "100 %"}, {50.0, "50"}, {0.0, "0"}}};
    std::string line;
    std::string band;
    std::string bandBack;
    std::string ticks;
    for (const Chart::Point& point : chart.points)
    {
        const double x = across(point.x);
        line += fmt::format("{}{:.1f} {:.1f}", line.empty() ? 'M' : 'L', x, panel.Down(point.y));
        band += fmt::format("{}{:.1f} {:.1f}", band.empty() ? 'M' : 'L', x, panel.Down(point.most));
        bandBack.insert(0, fmt::format("L{:.1f} {:.1f}", x, panel.Down(point.least)));
        ticks += Tick(100.0 * x / Width, fmt::format("{:g}", point.x));
    }
    std::string shapes =
        fmt::format("<path class=\"shade\" d=\"{}{}Z\"/>\n<path class=\"curve\" d=\"{}\"/>\n", band, bandBack, line);
    if (chart.marked)
    {
        shapes += fmt::format("<line class=\"threshold\" x1=\"{0:.1f}\" x2=\"{0:.1f}\" y1=\"0\" y2=\"{1:.0f}\"/>\n",
                              across(*chart.marked), Height);
    }
    return "<div class=\"figure\">" + Draw(panel, "chart", shapes) + "<div class=\"time\" aria-hidden=\"true\">" + ticks +
           "</div>\n<p class=\"caption\">" + Escaped(chart.xName) + "</p></div>\n";
}

} // namespace velox::console

#include "console/languages/MissEstimate.h"

#include "console/text/Wording.h"
#include "engine/base/CountInterval.h"
#include "engine/models/ScoreScale.h"

#include <fmt/format.h>

#include <algorithm>

namespace velox::console
{

namespace
{

constexpr std::size_t LeastVoices = 6; // fewer are not enough to do without half of them

int64_t MissedAt(double alarmsPerHour, std::span<const float> scores)
{
    const float threshold = engine::ScoreScale::FromAlarmsPerHour(alarmsPerHour);
    return std::ranges::count_if(scores, [&](float score) { return score < threshold; });
}

} // namespace

void AddMisses(std::span<const float> scores, std::size_t voices, double alarmsPerHour, Report* report)
{
    if (voices < LeastVoices)
    {
        report->remarks.push_back({Tone::Note, "NoEstimate",
                                   fmt::format("the misses are not estimated: that takes {} voices", LeastVoices),
                                   "Give more recordings."});
        return;
    }
    const auto all = std::ssize(scores);
    const int64_t missed = MissedAt(alarmsPerHour, scores);
    const engine::CountInterval share = engine::ShareFromCount(missed, all);
    report->facts.insert(report->facts.end(), {{"missed", missed, "misses",
                                                fmt::format("{} of {} of {}; that leaves {:.1f} % to {:.1f} % open (95 %)",
                                                            missed, Counted(scores.size(), "take"), Counted(voices, "voice"),
                                                            100.0 * share.least, 100.0 * share.most)},
                                               {"heldOutTakes", all},
                                               {"heldOutVoices", voices},
                                               {"missShareLeast", share.least},
                                               {"missShareMost", share.most}});
    report->remarks.push_back({Tone::Note, "Misses",
                               "the misses are those of two shorter trainings, each without half of the voices and then tried on "
                               "them, in quiet; the language has learned from all voices and should do no worse",
                               ""});
    Chart& chart = report->chart.emplace(Chart{"Misses", "False alarms per hour", "Misses in percent", {}});
    for (const double rate : {0.01, 0.02, 0.05, 0.1, 0.2, 0.5, 1.0, 2.0, 5.0, 10.0})
    {
        const int64_t below = MissedAt(rate, scores);
        const engine::CountInterval open = engine::ShareFromCount(below, all);
        chart.points.push_back(
            {rate, 100.0 * static_cast<double>(below) / static_cast<double>(all), 100.0 * open.least, 100.0 * open.most});
    }
    if (alarmsPerHour >= chart.points.front().x && alarmsPerHour <= chart.points.back().x)
    {
        chart.marked = alarmsPerHour;
    }
}

} // namespace velox::console

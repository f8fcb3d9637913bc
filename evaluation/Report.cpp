#include "evaluation/Report.h"

#include "evaluation/Format.h"

#include <algorithm>
#include <cmath>

namespace velox::evaluation
{

namespace
{

std::string Text(const Goal& goal)
{
    if (!goal.IsSet())
    {
        return "";
    }
    return std::isfinite(goal.least) ? Short(goal.least) + " to " + Short(goal.most) : Short(goal.most);
}

} // namespace

const Report::Run& Report::Largest(const std::vector<Run>& runs)
{
    return *std::max_element(runs.begin(), runs.end(), [](const Run& a, const Run& b) { return a.figure < b.figure; });
}

void Report::Add(const std::string& what, const std::string& unit, const Goal& goal, Run run)
{
    auto found = std::find_if(rows.begin(), rows.end(), [&](const Row& row) { return row.what == what; });
    if (found == rows.end())
    {
        found = rows.insert(rows.end(), Row{what, unit, goal, {}});
    }
    found->runs.push_back(std::move(run));
}

void Report::Add(const std::string& what, double figure, const Goal& goal, const std::string& unit)
{
    Add(what, unit, goal, Run{figure, "", std::nullopt});
}

void Report::Add(const std::string& what, const Share& share, const Goal& goal)
{
    const std::string cases = std::to_string(share.counted) + " of " + std::to_string(share.all);
    const engine::CountInterval part = engine::ShareFromCount(share.counted, share.all);
    Add(what, "%", goal, Run{share.Percent(), cases, engine::CountInterval{100.0 * part.least, 100.0 * part.most}});
}

void Report::AddRate(const std::string& what, int events, double hours, const Goal& goal)
{
    if (hours <= 0.0)
    {
        Add(what, "/h", goal, Run{std::numeric_limits<double>::infinity(), "nothing was heard", std::nullopt});
        return;
    }
    Add(what, "/h", goal,
        Run{events / hours, std::to_string(events) + " in " + Short(hours) + " h", engine::RateFromCount(events, hours)});
}

void Report::Note(const std::string& line)
{
    notes += line + "\n";
}

std::optional<double> Report::Worst(const std::string& what) const
{
    const auto found = std::find_if(rows.begin(), rows.end(), [&](const Row& row) { return row.what == what; });
    if (found == rows.end())
    {
        return std::nullopt;
    }
    return Largest(found->runs).figure;
}

std::string Report::Table() const
{
    std::string table = "| figure | runs | largest | 95 % | cases | goal | reached |\n|---|---|---|---|---|---|---|\n";
    for (const Row& row : rows)
    {
        std::string figures;
        bool reached = true;
        for (const Run& run : row.runs)
        {
            figures += (figures.empty() ? "" : ", ") + Short(run.figure);
            reached = reached && row.goal.Reached(run.figure);
        }
        const Run& largest = Largest(row.runs);
        const std::string interval =
            largest.interval ? Short(largest.interval->least) + " to " + Short(largest.interval->most) : "";
        table += "| " + row.what + " | " + figures + " | " + Short(largest.figure) + " " + row.unit + " | " + interval + " | " +
                 largest.cases + " | " + Text(row.goal) + " | " + (row.goal.IsSet() ? (reached ? "yes" : "no") : "") + " |\n";
    }
    return table;
}

} // namespace velox::evaluation

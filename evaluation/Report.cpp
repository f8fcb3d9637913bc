#include "evaluation/Report.h"

#include "evaluation/Format.h"

#include <algorithm>

namespace velox::evaluation
{

Report::Row& Report::RowOf(const std::string& what)
{
    const auto found = std::find_if(rows.begin(), rows.end(), [&](const Row& row) { return row.what == what; });
    if (found != rows.end())
    {
        return *found;
    }
    return rows.emplace_back(Row{what, "", -1.0, {}, {}});
}

void Report::Add(const std::string& what, double figure, double limit, const std::string& unit)
{
    Row& row = RowOf(what);
    row.unit = unit;
    row.limit = limit;
    row.figures.push_back(figure);
}

void Report::Add(const std::string& what, const Share& share, double limit)
{
    Add(what, share.Percent(), limit);
    Row& row = RowOf(what);
    row.share.counted += share.counted;
    row.share.all += share.all;
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
    return *std::max_element(found->figures.begin(), found->figures.end());
}

std::string Report::Table() const
{
    std::string table = "| figure | runs | worst | goal | reached | cases |\n|---|---|---|---|---|---|\n";
    for (const Row& row : rows)
    {
        std::string runs;
        for (const double figure : row.figures)
        {
            runs += (runs.empty() ? "" : ", ") + Short(figure);
        }
        const double worst = *std::max_element(row.figures.begin(), row.figures.end());
        const bool goal = row.limit >= 0.0;
        const std::string reached = worst <= row.limit ? "yes" : "no";
        table += "| " + row.what + " | " + runs + " | " + Short(worst) + " " + row.unit + " | " +
                 (goal ? Short(row.limit) + " | " + reached : " | ") + " | ";
        if (row.share.all > 0)
        {
            table += std::to_string(row.share.counted) + " of " + std::to_string(row.share.all);
        }
        table += " |\n";
    }
    return table;
}

} // namespace velox::evaluation

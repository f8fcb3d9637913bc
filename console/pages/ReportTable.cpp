#include "console/pages/ReportTable.h"

#include "console/text/Wording.h"

#include <algorithm>

namespace velox::console
{

ReportTable TableOf(const std::vector<Entry>& entries)
{
    const bool titled = std::ranges::any_of(entries, [](const Entry& entry) { return !entry.title.empty(); });
    const bool judged = std::ranges::any_of(entries, [](const Entry& entry) { return !entry.status.empty(); });
    ReportTable table;
    table.columns.resize(std::size_t{titled} + std::size_t{judged});
    const std::size_t firstFact = table.columns.size();
    for (const Entry& entry : entries)
    {
        ReportTable::Row row{&entry, std::vector<std::string>(table.columns.size())};
        if (titled)
        {
            row.cells.front() = entry.title;
        }
        if (judged)
        {
            row.cells[firstFact - 1] = entry.status;
        }
        for (const Fact& fact : entry.facts)
        {
            if (fact.text.empty())
            {
                continue;
            }
            const auto named = table.columns.begin() + static_cast<std::ptrdiff_t>(firstFact);
            const auto column = std::find(named, table.columns.end(), Capitalised(fact.name));
            const auto index = static_cast<std::size_t>(column - table.columns.begin());
            if (column == table.columns.end())
            {
                table.columns.push_back(Capitalised(fact.name));
            }
            row.cells.resize(table.columns.size());
            row.cells[index] = fact.text;
        }
        table.rows.push_back(std::move(row));
    }
    for (ReportTable::Row& row : table.rows)
    {
        row.cells.resize(table.columns.size());
    }
    return table;
}

std::string FactLine(const std::vector<Fact>& facts)
{
    std::vector<std::string> texts;
    for (const Fact& fact : facts)
    {
        if (!fact.text.empty())
        {
            texts.push_back(fact.name.empty() ? fact.text : fact.name + " " + fact.text);
        }
    }
    return Joined(texts);
}

std::string Capitalised(std::string text)
{
    if (!text.empty() && text.front() >= 'a' && text.front() <= 'z')
    {
        text.front() = static_cast<char>(text.front() - 'a' + 'A');
    }
    return text;
}

} // namespace velox::console

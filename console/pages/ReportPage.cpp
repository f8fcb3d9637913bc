#include "console/pages/ReportPage.h"

#include "console/pages/Escaped.h"
#include "console/pages/Figure.h"
#include "console/pages/PageFiles.h"
#include "console/pages/ReportTable.h"
#include "console/text/Wording.h"

#include <kainjow/mustache.hpp>

#include <algorithm>

namespace velox::console
{

namespace
{

using kainjow::mustache::data;
using kainjow::mustache::mustache;
using List = kainjow::mustache::list;

constexpr std::size_t MostRows = 2000;
constexpr std::size_t MostPlacesListed = 40;
constexpr std::size_t MostCloseUps = 200;

std::string ToneClass(Tone tone)
{
    switch (tone)
    {
    case Tone::Good:
        return "good";
    case Tone::Bad:
        return "bad";
    case Tone::Warning:
        return "warning";
    default:
        return "neutral";
    }
}

std::string ToneSign(Tone tone)
{
    return tone == Tone::Good ? "✓" : tone == Tone::Bad ? "✗" : tone == Tone::Warning ? "!" : "–";
}

/// A list under its name, and whether it has anything.
void SetList(const std::string& name, const List& list, data* to)
{
    std::string flag = "has" + Capitalised(name);
    to->set(flag, list.empty() ? data::type::bool_false : data::type::bool_true);
    to->set(name, data(list));
}

void SetTone(Tone tone, data* to)
{
    to->set("tone", ToneClass(tone));
    to->set("sign", ToneSign(tone));
}

/// Nothing is set when there is nothing: an empty text counts as true.
void SetText(const std::string& name, const std::string& text, data* to)
{
    to->set(name, text.empty() ? data(data::type::bool_false) : data(text));
}

List RemarksOf(const std::vector<Remark>& remarks)
{
    List list;
    for (const Remark& remark : remarks)
    {
        data item;
        SetTone(remark.tone, &item);
        item.set("text", remark.text);
        SetText("fix", remark.fix, &item);
        list.push_back(std::move(item));
    }
    return list;
}

List FactsOf(const std::vector<Fact>& facts)
{
    List list;
    for (const Fact& fact : facts)
    {
        if (!fact.text.empty())
        {
            data item("name", Capitalised(fact.name));
            item.set("text", fact.text);
            SetText("meaning", fact.meaning, &item);
            list.push_back(std::move(item));
        }
    }
    return list;
}

/// A phone shows the cells one below the other, with the columns' names before them.
List CellsOf(const ReportTable& table, const ReportTable::Row& row)
{
    List cells;
    for (std::size_t i = 0; i < row.cells.size(); ++i)
    {
        data cell("column", table.columns[i]);
        cell.set("text", row.cells[i]);
        cells.push_back(std::move(cell));
    }
    return cells;
}

data TableData(const std::vector<Entry>& entries)
{
    const ReportTable table = TableOf(entries);
    List rows;
    for (const ReportTable::Row& row : std::span(table.rows).first(std::min(table.rows.size(), MostRows)))
    {
        data item("tone", ToneClass(row.entry->tone));
        item.set("cells", data(CellsOf(table, row)));
        rows.push_back(std::move(item));
    }
    data result;
    result.set("columns", data(List(table.columns.begin(), table.columns.end())));
    result.set("rows", data(rows));
    SetText("more", table.rows.size() > MostRows ? std::to_string(table.rows.size() - MostRows) : "", &result);
    return result;
}

/// The marks in words, for those who do not see the pictures.
List PlacesOf(std::vector<Mark> marks)
{
    std::ranges::stable_sort(marks, {}, &Mark::begin);
    List places;
    for (const Mark& mark : std::span(marks).first(std::min(marks.size(), MostPlacesListed)))
    {
        places.emplace_back(MarkName(mark.kind) + ", " + PlaceText(mark.begin, mark.end) +
                            (mark.text.empty() ? "" : ": " + mark.text));
    }
    if (marks.size() > MostPlacesListed)
    {
        places.emplace_back("and " + std::to_string(marks.size() - MostPlacesListed) + " more places");
    }
    return places;
}

List CloseUpsOf(const std::vector<Entry>& parts, std::size_t entryNumber)
{
    List closeUps;
    for (const Entry& part : parts)
    {
        if (part.picture.seconds > 0.0 && closeUps.size() < MostCloseUps)
        {
            const std::string id = std::to_string(entryNumber) + "-" + std::to_string(closeUps.size());
            data item("title", part.title + (part.status.empty() ? "" : ", " + part.status));
            item.set("figure", Figure(part.picture, id));
            closeUps.push_back(std::move(item));
        }
    }
    return closeUps;
}

data EntryData(const Entry& entry, std::size_t number)
{
    data item("title", std::to_string(number) + ". " + entry.title);
    SetTone(entry.tone, &item);
    SetText("status", Capitalised(entry.status), &item);
    SetText("facts", FactLine(entry.facts), &item);
    SetList("remarks", RemarksOf(entry.remarks), &item);
    item.set("figure", Figure(entry.picture, std::to_string(number)));
    SetList("places", entry.parts.empty() ? PlacesOf(entry.picture.marks) : List(), &item);
    if (!entry.parts.empty())
    {
        item.set("parts", TableData(entry.parts));
    }
    item.set("closeUps", data(CloseUpsOf(entry.parts, number)));
    return item;
}

} // namespace

std::string ReportPage(std::string_view command, const Report& report)
{
    data page("command", std::string(command));
    page.set("version", VELOX_VERSION);
    page.set("style", std::string(PageStyle));
    page.set("verdict", report.verdict.empty() && report.error ? report.error->message : report.verdict);
    SetTone(report.exitCode == ExitCode::Success ? Tone::Good : Tone::Bad, &page);
    SetList("facts", FactsOf(report.facts), &page);
    std::vector<Remark> remarks = report.remarks;
    if (report.error)
    {
        remarks.insert(remarks.begin(), {Tone::Bad, "", report.error->message, report.error->fix});
    }
    SetList("remarks", RemarksOf(remarks), &page);
    page.set("chart", report.chart ? ChartFigure(*report.chart) : "");
    if (report.results.size() > 1)
    {
        page.set("overview", TableData(report.results));
    }
    List results;
    for (const Entry& entry : report.results)
    {
        results.push_back(EntryData(entry, results.size() + 1));
    }
    page.set("results", data(results));
    page.set("table", data(kainjow::mustache::partial([] { return std::string(TableTemplate); })));

    mustache layout{std::string(PageTemplate)};
    layout.set_custom_escape([](const std::string& text) { return Escaped(text); });
    return layout.render(page);
}

} // namespace velox::console

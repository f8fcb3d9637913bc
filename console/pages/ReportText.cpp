#include "console/pages/ReportText.h"

#include "console/pages/ReportTable.h"

#include <fmt/format.h>

#include <utf8.h>

#include <algorithm>

namespace velox::console
{

namespace
{

constexpr std::size_t NameWidth = 15;
constexpr std::string_view Indent = "    ";

std::string Coloured(Tone tone, std::string_view text, const Style& style)
{
    switch (tone)
    {
    case Tone::Good:
        return style.Good(text);
    case Tone::Note:
        return style.Dim(text);
    case Tone::Warning:
        return style.Warning(text);
    case Tone::Bad:
        return style.Bad(text);
    default:
        return std::string(text);
    }
}

/// What a remark begins with that is no reason for a refusal.
std::string_view Prefix(Tone tone)
{
    return tone == Tone::Warning ? "warning: " : tone == Tone::Note ? "note: " : "";
}

std::string RemarkText(const Remark& remark, std::string_view indent, const Style& style)
{
    std::string text = fmt::format("{}{}{}\n", indent, Coloured(remark.tone, Prefix(remark.tone), style), remark.text);
    if (!remark.fix.empty())
    {
        text += fmt::format("{}fix: {}\n", indent, remark.fix);
    }
    return text;
}

/// In columns of the console, about: each character counts as one.
std::size_t WidthOf(std::string_view text)
{
    std::string valid = utf8::replace_invalid(text);
    return static_cast<std::size_t>(utf8::distance(valid.begin(), valid.end()));
}

std::string TableLine(const std::vector<std::string>& cells, const std::vector<std::size_t>& widths)
{
    std::string line;
    for (std::size_t i = 0; i < cells.size(); ++i)
    {
        line += cells[i] + std::string(2 + widths[i] - std::min(widths[i], WidthOf(cells[i])), ' ');
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
}

std::string TableText(const std::vector<Entry>& parts, const Style& style)
{
    constexpr std::size_t Widest = 60;
    const ReportTable table = TableOf(parts);
    std::vector<std::size_t> widths;
    for (std::size_t i = 0; i < table.columns.size(); ++i)
    {
        widths.push_back(WidthOf(table.columns[i]));
        for (const ReportTable::Row& row : table.rows)
        {
            widths[i] = std::max(widths[i], std::min(Widest, WidthOf(row.cells[i])));
        }
    }
    std::string text = style.Heading("    " + TableLine(table.columns, widths)) + "\n";
    for (const ReportTable::Row& row : table.rows)
    {
        const bool wrong = row.entry->tone == Tone::Bad;
        const std::string line = (wrong ? "  ! " : "    ") + TableLine(row.cells, widths);
        text += Coloured(row.entry->tone, line, style) + "\n";
        for (const Remark& remark : row.entry->remarks)
        {
            text += RemarkText(remark, "        ", style);
        }
    }
    return text;
}

std::string EntryText(const Entry& entry, const Style& style)
{
    std::string text = entry.status.empty() ? entry.title : Coloured(entry.tone, entry.status, style) + "  " + entry.title;
    text += "\n";
    for (const Remark& remark : entry.remarks)
    {
        text += RemarkText(remark, Indent, style);
    }
    if (const std::string facts = FactLine(entry.facts); !facts.empty())
    {
        text += fmt::format("{}{}\n", Indent, style.Dim(facts));
    }
    return entry.parts.empty() ? text : text + TableText(entry.parts, style);
}

} // namespace

std::string ReportText(const Report& report, const Style& style, bool everything)
{
    std::string text = report.text;
    for (const Entry& entry : report.results)
    {
        if (everything || !entry.detail)
        {
            text += EntryText(entry, style);
        }
    }
    for (const Fact& fact : report.facts)
    {
        if (!fact.text.empty())
        {
            text += fmt::format("{:<{}}{}\n", Capitalised(fact.name) + ":", NameWidth, fact.text);
        }
    }
    for (const Remark& remark : report.remarks)
    {
        text += RemarkText(remark, "", style);
    }
    return text;
}

} // namespace velox::console

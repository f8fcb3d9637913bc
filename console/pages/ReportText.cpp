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

/// @param about  the tone of what the remark is about; one of the same tone needs no word of its own
std::string RemarkText(const Remark& remark, Tone about, std::string_view indent, bool coloured)
{
    const char* word = remark.tone == about           ? ""
                       : remark.tone == Tone::Warning ? "warning: "
                       : remark.tone == Tone::Note    ? "note: "
                                                      : "";
    std::string text = fmt::format("{}{}{}\n", indent, Coloured(remark.tone, word, coloured), remark.text);
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

std::string TableText(const std::vector<Entry>& parts, bool coloured)
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
    std::string text = "    " + TableLine(table.columns, widths) + "\n";
    for (const ReportTable::Row& row : table.rows)
    {
        const bool wrong = row.entry->tone == Tone::Bad;
        const std::string line = (wrong ? "  ! " : "    ") + TableLine(row.cells, widths);
        text += Coloured(row.entry->tone, line, coloured) + "\n";
        for (const Remark& remark : row.entry->remarks)
        {
            text += RemarkText(remark, row.entry->tone, "        ", coloured);
        }
    }
    return text;
}

std::string EntryText(const Entry& entry, bool coloured)
{
    std::string text = entry.status.empty() ? entry.title : Coloured(entry.tone, entry.status, coloured) + "  " + entry.title;
    text += "\n";
    for (const Remark& remark : entry.remarks)
    {
        text += RemarkText(remark, entry.tone, Indent, coloured);
    }
    if (const std::string facts = FactLine(entry.facts); !facts.empty())
    {
        text += fmt::format("{}{}\n", Indent, Coloured(Tone::Note, facts, coloured));
    }
    return entry.parts.empty() ? text : text + TableText(entry.parts, coloured);
}

} // namespace

std::string ReportText(const Report& report, bool coloured, bool everything)
{
    std::string text;
    for (const Entry& entry : report.results)
    {
        if (everything || !entry.detail)
        {
            text += EntryText(entry, coloured);
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
        text += RemarkText(remark, Tone::Neutral, "", coloured);
    }
    return text;
}

std::string Coloured(Tone tone, const std::string& text, bool coloured)
{
    const char* code = tone == Tone::Good      ? "32"
                       : tone == Tone::Note    ? "2"
                       : tone == Tone::Warning ? "33"
                       : tone == Tone::Bad     ? "31"
                                               : "";
    return !coloured || *code == '\0' || text.empty() ? text : fmt::format("\x1b[{}m{}\x1b[0m", code, text);
}

} // namespace velox::console

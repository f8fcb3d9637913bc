#include "console/pages/ReportPage.h"

#include "console/pages/Markup.h"
#include "console/pages/RecordingFigure.h"
#include "console/pages/ReportStyleSheet.h"

#include <fmt/format.h>

#include <algorithm>

namespace velox::console
{

namespace
{

constexpr std::size_t MostPlacesListed = 40;

std::string ToneClass(Tone tone)
{
    return tone == Tone::Good ? "good" : tone == Tone::Bad ? "bad" : "neutral";
}

std::string_view ToneSign(Tone tone)
{
    return tone == Tone::Good ? "✓" : tone == Tone::Bad ? "✗" : "–";
}

std::string VerdictLine(Tone tone, std::string_view verdict)
{
    const std::string sign = fmt::format("<span class=\"sign\" aria-hidden=\"true\">{}</span>", ToneSign(tone));
    return Element("p", fmt::format("class=\"verdict {}\"", ToneClass(tone)),
                   sign + fmt::format("<span class=\"word\">{}</span>", Escaped(verdict)));
}

std::string List(std::string_view classes, const std::vector<std::string>& items)
{
    std::string content;
    for (const std::string& item : items)
    {
        content += TextElement("li", "", item);
    }
    return content.empty() ? "" : Element("ul", classes.empty() ? "" : fmt::format("class=\"{}\"", classes), content);
}

std::string Facts(const std::vector<ReportFact>& facts)
{
    std::string content;
    for (const ReportFact& fact : facts)
    {
        const std::string meaning = fact.meaning.empty() ? "" : " " + TextElement("span", "muted", fact.meaning);
        content += TextElement("dt", "", fact.name) + Element("dd", "", Escaped(fact.value) + meaning);
    }
    return content.empty() ? "" : Element("dl", "", content);
}

std::string Table(const ReportTable& table)
{
    std::string head;
    for (const std::string& column : table.columns)
    {
        head += Element("th", "scope=\"col\"", Escaped(column));
    }
    std::string body;
    for (const auto& row : std::span(table.rows).first(std::min(table.rows.size(), ReportTable::MostRows)))
    {
        std::string cells;
        for (std::size_t i = 0; i < std::min(row.size(), table.columns.size()); ++i)
        {
            // A phone shows the cells one below the other, with the columns' names before them.
            cells += Element("td", fmt::format("data-column=\"{}\"", Escaped(table.columns[i])),
                             fmt::format("<span>{}</span>", Escaped(row[i])));
        }
        body += Element("tr", "", cells);
    }
    std::string markup = TextElement("h2", "", table.title) +
                         Element("table", "", Element("thead", "", Element("tr", "", head)) + Element("tbody", "", body));
    if (table.rows.size() > ReportTable::MostRows)
    {
        markup += TextElement("p", "muted", fmt::format("And {} more.", table.rows.size() - ReportTable::MostRows));
    }
    return Element("section", "", markup);
}

/// The marks in words, for those who do not see the pictures.
std::string Places(std::vector<ReportMark> marks)
{
    std::ranges::stable_sort(marks, {}, &ReportMark::begin);
    std::vector<std::string> places;
    for (const ReportMark& mark : std::span(marks).first(std::min(marks.size(), MostPlacesListed)))
    {
        places.push_back(MarkName(mark.kind) + ", " + PlaceText(mark.begin, mark.end) +
                         (mark.text.empty() ? "" : ": " + mark.text));
    }
    if (marks.size() > MostPlacesListed)
    {
        places.push_back(fmt::format("and {} more places", marks.size() - MostPlacesListed));
    }
    return List("places", places);
}

std::string Recording(const ReportRecording& recording, std::size_t number)
{
    std::string facts = recording.seconds > 0.0 ? PlaceText(recording.seconds, recording.seconds) : "";
    facts += facts.empty() || recording.conversion.empty() ? recording.conversion : ", " + recording.conversion;
    return Element("section", "",
                   TextElement("h2", "", fmt::format("{}. {}", number, recording.name)) +
                       (facts.empty() ? "" : TextElement("p", "muted", facts)) + VerdictLine(recording.tone, recording.verdict) +
                       List("", recording.reasons) + List("fixes", recording.fixes) + RecordingFigure(recording, number) +
                       Places(recording.marks));
}

std::string Head(const Report& report)
{
    return Element("head", "",
                   "<meta charset=\"utf-8\"/>\n"
                   "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\"/>\n" +
                       TextElement("title", "", "velox-kws " + report.command + ": " + report.verdict) +
                       Element("style", "", ReportStyleSheet));
}

} // namespace

std::string RenderReport(const Report& report)
{
    std::string body = TextElement("h1", "", "velox-kws " + report.command) + VerdictLine(report.tone, report.verdict) +
                       Facts(report.facts) + List("", report.notes);
    if (report.table)
    {
        body += Table(*report.table);
    }
    std::size_t number = 0;
    for (const ReportRecording& recording : report.recordings)
    {
        body += Recording(recording, ++number);
    }
    body +=
        TextElement("footer", "", "velox-kws " VELOX_VERSION ". This page holds pictures of the recordings, not their sound.");
    return "<!DOCTYPE html>\n" + Element("html", "lang=\"en\" xmlns=\"http://www.w3.org/1999/xhtml\"",
                                         Head(report) + Element("body", "", Element("main", "", body)));
}

} // namespace velox::console

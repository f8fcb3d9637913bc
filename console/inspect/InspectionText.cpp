#include "console/inspect/InspectionText.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace velox::console
{

namespace
{

using Json = nlohmann::ordered_json;
using Fields = std::span<const InspectedField>;

constexpr std::size_t WidestValue = 40;
constexpr std::size_t MostRangesInText = 20;

struct Row
{
    std::size_t offset = 0;
    std::size_t size = 0;
    std::string path;
    std::string value;
    std::string meaning;
    bool wrong = false;
};

/// The fields of one group that follow each other, and are not wrong.
Fields TakeGroup(Fields fields)
{
    const auto other = std::find_if(fields.begin(), fields.end(), [&](const InspectedField& field) {
        return field.group != fields.front().group || field.check == FieldCheck::Wrong;
    });
    return fields.first(static_cast<std::size_t>(other - fields.begin()));
}

std::vector<Row> Rows(const Inspection& inspection, FieldsShown shown)
{
    std::vector<Row> rows;
    for (Fields fields(inspection.fields); !fields.empty();)
    {
        const InspectedField& field = fields.front();
        const Fields group = shown == FieldsShown::Every || field.group.empty() ? Fields() : TakeGroup(fields);
        if (group.size() > 1)
        {
            const std::size_t end = group.back().offset + group.back().size;
            rows.push_back({field.offset, end - field.offset, field.group, fmt::format("{} fields", group.size()),
                            "--verbose shows them", false});
            fields = fields.subspan(group.size());
        }
        else
        {
            rows.push_back({field.offset, field.size, field.path, field.value, field.meaning, field.check == FieldCheck::Wrong});
            fields = fields.subspan(1);
        }
    }
    return rows;
}

template <typename Member>
std::size_t Widest(const std::vector<Row>& rows, Member member, std::size_t least)
{
    for (const Row& row : rows)
    {
        least = std::max(least, (row.*member).size());
    }
    return least;
}

std::string RangeText(const ByteRange& range)
{
    return fmt::format("{} to {} ({} bytes)", OffsetText(range.offset), OffsetText(range.offset + range.size - 1), range.size);
}

std::string CheckName(FieldCheck check)
{
    return check == FieldCheck::None ? "none" : check == FieldCheck::Right ? "right" : "wrong";
}

Json RangeJson(const ByteRange& range)
{
    return {{"offset", OffsetText(range.offset)}, {"size", range.size}};
}

Json SideJson(const InspectedField& field)
{
    return {{"offset", OffsetText(field.offset)}, {"size", field.size}, {"value", field.value}};
}

std::string Table(const std::vector<Row>& rows, const Style& style)
{
    const std::size_t pathWidth = Widest(rows, &Row::path, 5);
    const std::size_t valueWidth = std::min(Widest(rows, &Row::value, 5), WidestValue);
    std::string text = style.Heading(fmt::format("  {:>8}  {:>7}  {:<{}}  {:<{}}  meaning", "offset", "bytes", "field", pathWidth,
                                                 "value", valueWidth)) +
                       "\n";
    for (const Row& row : rows)
    {
        const std::string line = fmt::format("{} {:>8}  {:>7}  {:<{}}  {:<{}}  {}", row.wrong ? "!" : " ", OffsetText(row.offset),
                                             row.size, row.path, pathWidth, row.value, valueWidth, row.meaning);
        text += (row.wrong ? style.Bad(line) : line) + "\n";
    }
    return text;
}

} // namespace

std::string OffsetText(std::size_t offset)
{
    return fmt::format("0x{:04X}", offset);
}

std::string InspectionText(const std::string& file, const Inspection& inspection, FieldsShown shown, const Style& style)
{
    std::string text = fmt::format("{}: {}, {} bytes\n", file, FileKindName(inspection.kind), inspection.size);
    if (!inspection.fields.empty() && shown != FieldsShown::None)
    {
        text += Table(Rows(inspection, shown), style);
    }
    if (inspection.rest && !inspection.fields.empty())
    {
        text += fmt::format("  {} could not be read as fields.\n", RangeText(*inspection.rest));
    }
    for (const InspectionError& error : inspection.errors)
    {
        text += style.Bad(fmt::format("error at {}, {}: {}", OffsetText(error.offset), error.path, error.message)) + "\n";
    }
    for (const std::string& note : inspection.notes)
    {
        text += style.Dim("note: " + note) + "\n";
    }
    return text;
}

std::string DifferenceText(const InspectionDifference& difference, const Style& style)
{
    if (difference.same)
    {
        return {};
    }
    std::string text = style.Heading("Differences:") + "\n";
    for (const FieldDifference& field : difference.fields)
    {
        text +=
            fmt::format("  {} {}: {} -> {}\n", OffsetText(field.first.offset), field.path, field.first.value, field.second.value);
        if (field.first.value == field.second.value || field.changedBytes > sizeof(uint64_t))
        {
            text += fmt::format("    {} bytes differ, the first at {}\n", field.changedBytes, OffsetText(field.firstChange));
        }
    }
    for (const std::string& path : difference.onlyInFirst)
    {
        text += fmt::format("  only in the first file: {}\n", path);
    }
    for (const std::string& path : difference.onlyInSecond)
    {
        text += fmt::format("  only in the second file: {}\n", path);
    }
    for (std::size_t i = 0; i < std::min(difference.ranges.size(), MostRangesInText); ++i)
    {
        text += fmt::format("  bytes {}\n", RangeText(difference.ranges[i]));
    }
    if (difference.ranges.size() > MostRangesInText)
    {
        text += fmt::format("  and {} more ranges (--json lists them)\n", difference.ranges.size() - MostRangesInText);
    }
    return text;
}

Json InspectionJson(const std::string& file, const Inspection& inspection)
{
    Json fields = Json::array();
    for (const InspectedField& field : inspection.fields)
    {
        fields.push_back({{"path", field.path},
                          {"offset", OffsetText(field.offset)},
                          {"size", field.size},
                          {"value", field.value},
                          {"meaning", field.meaning},
                          {"check", CheckName(field.check)}});
    }
    Json errors = Json::array();
    for (const InspectionError& error : inspection.errors)
    {
        errors.push_back({{"offset", OffsetText(error.offset)}, {"path", error.path}, {"message", error.message}});
    }
    Json json;
    json["file"] = file;
    json["kind"] = FileKindName(inspection.kind);
    json["size"] = inspection.size;
    json["fields"] = std::move(fields);
    json["rest"] = inspection.rest ? RangeJson(*inspection.rest) : Json(nullptr);
    json["errors"] = std::move(errors);
    json["notes"] = inspection.notes;
    return json;
}

Json DifferenceJson(const InspectionDifference& difference)
{
    Json fields = Json::array();
    for (const FieldDifference& field : difference.fields)
    {
        fields.push_back({{"path", field.path},
                          {"first", SideJson(field.first)},
                          {"second", SideJson(field.second)},
                          {"changedBytes", field.changedBytes},
                          {"firstChange", OffsetText(field.firstChange)}});
    }
    Json ranges = Json::array();
    for (const ByteRange& range : difference.ranges)
    {
        ranges.push_back(RangeJson(range));
    }
    Json json;
    json["same"] = difference.same;
    json["fields"] = std::move(fields);
    json["onlyInFirst"] = difference.onlyInFirst;
    json["onlyInSecond"] = difference.onlyInSecond;
    json["ranges"] = std::move(ranges);
    return json;
}

} // namespace velox::console

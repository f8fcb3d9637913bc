#include "console/inspect/InspectCommand.h"

#include "console/inspect/Inspection.h"
#include "console/text/Utf8Path.h"
#include "console/text/Wording.h"
#include "console/text/WriteWhole.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <memory>

namespace velox::console
{

namespace
{

using FileBytes = std::span<const uint8_t>;

struct InspectedFile
{
    std::string name;
    std::vector<uint8_t> bytes;
    Inspection inspection;
};

InspectedFile ReadInspected(const std::filesystem::path& path)
{
    constexpr std::uintmax_t LargestFile = 128U << 20U;
    std::error_code error;
    if (const std::uintmax_t size = std::filesystem::file_size(path, error); !error && size > LargestFile)
    {
        throw CommandFailure(ExitCode::BadInput, fmt::format("{} has {} bytes. No block and no model is larger than {}.",
                                                             Utf8(path), size, LargestFile));
    }
    InspectedFile file{Utf8(path), ReadWhole(path), {}};
    file.inspection = Inspect(file.bytes);
    return file;
}

Fact TextFact(const char* key, const std::string& text)
{
    return {key, text, key, text};
}

Entry FieldEntry(const InspectedField& field)
{
    Entry entry{field.path};
    entry.facts = {TextFact("offset", OffsetText(field.offset)),
                   {"bytes", field.size, "bytes", std::to_string(field.size)},
                   TextFact("value", field.value),
                   TextFact("meaning", field.meaning)};
    if (!field.error.empty())
    {
        entry.status = "wrong";
        entry.tone = Tone::Bad;
        entry.remarks = {{Tone::Bad, "WrongField", fmt::format("error at {}: {}", OffsetText(field.offset), field.error), ""}};
    }
    return entry;
}

/// A model that can be read says which it is.
std::string KindText(const Inspection& inspection)
{
    return inspection.kind != FileKind::FirmwareModel || !inspection.states ? std::string(FileKindName(inspection.kind))
           : inspection.ofUser                                              ? "user model"
                                                                            : "key-phrase or firmware model";
}

/// What the file is, and what is wrong with it or good to know.
Entry FileEntry(const InspectedFile& file)
{
    const Inspection& inspection = file.inspection;
    const bool known = inspection.kind != FileKind::Unknown && inspection.kind != FileKind::Empty;
    Entry entry{file.name, KindText(inspection),
                inspection.FirstError() != nullptr ? Tone::Bad
                : known                            ? Tone::Good
                                                   : Tone::Warning};
    entry.facts = {{"bytes", file.bytes.size(), "", Counted(file.bytes.size(), "byte")}};
    entry.facts.insert(entry.facts.end(), inspection.facts.begin(), inspection.facts.end());
    for (const std::string& note : inspection.notes)
    {
        entry.remarks.push_back({Tone::Note, "", note, ""});
    }
    std::ranges::transform(inspection.fields, std::back_inserter(entry.parts), FieldEntry);
    return entry;
}

/// Where bytes are not the same, as "0x0708 to 0x070B" each; what only one side has is different. People see the first ones.
Fact DifferentBytes(FileBytes first, FileBytes second, std::size_t offset)
{
    constexpr std::size_t MostShown = 8;
    const auto differ = [&](std::size_t i) {
        return i >= std::min(first.size(), second.size()) || first[i] != second[i];
    };
    const std::size_t size = std::max(first.size(), second.size());
    std::vector<std::string> ranges;
    for (std::size_t begin = 0, end = 0; begin < size; begin = end)
    {
        for (end = begin + 1; end < size && differ(end) == differ(begin); ++end)
        {
        }
        if (differ(begin))
        {
            ranges.push_back(fmt::format("{} to {}", OffsetText(offset + begin), OffsetText(offset + end - 1)));
        }
    }
    const std::size_t shown = std::min(ranges.size(), MostShown);
    const std::string more = ranges.size() > shown ? fmt::format(", and {} more ranges", ranges.size() - shown) : "";
    return {"differentBytes", Joined(ranges), "different bytes", Joined(std::span(ranges).first(shown)) + more};
}

/// The fields that are not the same, by their paths, wherever they stand; then those of the second file alone.
std::vector<Entry> FieldDifferences(const InspectedFile& first, const InspectedFile& second)
{
    std::vector<Entry> parts;
    const auto add = [&](const InspectedField* one, const InspectedField* other) {
        const InspectedField& field = one != nullptr ? *one : *other;
        Entry part{field.path};
        part.facts = {TextFact("offset", OffsetText(field.offset)), TextFact("first", one != nullptr ? one->value : "has none"),
                      TextFact("second", other != nullptr ? other->value : "has none")};
        if (one != nullptr && other != nullptr)
        {
            const FileBytes own = FileBytes(first.bytes).subspan(one->offset, one->size);
            const FileBytes others = FileBytes(second.bytes).subspan(other->offset, other->size);
            if (std::ranges::equal(own, others))
            {
                return;
            }
            part.facts.push_back(DifferentBytes(own, others, field.offset));
        }
        parts.push_back(std::move(part));
    };
    for (const InspectedField& field : first.inspection.fields)
    {
        add(&field, second.inspection.Find(field.path));
    }
    for (const InspectedField& field : second.inspection.fields)
    {
        if (first.inspection.Find(field.path) == nullptr)
        {
            add(nullptr, &field);
        }
    }
    return parts;
}

Report CompareFiles(const InspectedFile& first, const InspectedFile& second)
{
    Report report;
    for (const InspectedFile* file : {&first, &second})
    {
        // What two files have in common is in the way of what tells them apart.
        report.results.push_back(FileEntry(*file));
        std::erase_if(report.results.back().parts, [](const Entry& part) { return part.tone != Tone::Bad; });
    }
    report.verdict = "The two files are the same.";
    if (first.bytes != second.bytes)
    {
        const bool sameKind = first.inspection.kind == second.inspection.kind;
        Entry difference{"What tells them apart"};
        difference.parts = sameKind ? FieldDifferences(first, second) : std::vector<Entry>();
        if (!sameKind)
        {
            difference.facts = {DifferentBytes(first.bytes, second.bytes, 0)};
        }
        report.exitCode = ExitCode::Refused;
        report.verdict = sameKind ? fmt::format("The two files differ in {}.", Counted(difference.parts.size(), "field"))
                                  : "The two files are of different kinds.";
        report.results.push_back(std::move(difference));
    }
    return report;
}

Report ShowFile(const InspectedFile& file)
{
    const FileKind kind = file.inspection.kind;
    Report report;
    report.results.push_back(FileEntry(file));
    if (kind == FileKind::Unknown || kind == FileKind::Empty)
    {
        report.exitCode = ExitCode::BadInput;
        report.verdict = file.name + (kind == FileKind::Empty ? " is empty." : " is none of the files that inspect knows.");
    }
    else if (const InspectedField* error = file.inspection.FirstError())
    {
        const auto errors =
            std::ranges::count_if(file.inspection.fields, [](const InspectedField& field) { return !field.error.empty(); });
        report.exitCode = ExitCode::Refused;
        report.verdict = fmt::format("{}: {} with {}, the first at {} ({}).", file.name, KindText(file.inspection),
                                     Counted(static_cast<std::size_t>(errors), "error"), OffsetText(error->offset), error->path);
    }
    else
    {
        report.verdict = fmt::format("{}: {}, nothing is wrong with it.", file.name, KindText(file.inspection));
    }
    return report;
}

} // namespace

Report InspectFiles(const std::vector<std::filesystem::path>& files)
{
    const InspectedFile first = ReadInspected(files.front());
    return files.size() == 1 ? ShowFile(first) : CompareFiles(first, ReadInspected(files[1]));
}

void AddInspectCommand(CLI::App& app, Commands& commands)
{
    CLI::App* command = app.add_subcommand("inspect", "Shows what stands in a firmware block, a model, a user model stream or a "
                                                      "threshold file, and what tells two of them apart");
    const auto files = std::make_shared<std::vector<std::string>>();
    command->add_option("FILE", *files, "one file, or two to compare")->required()->expected(1, 2);
    command->footer("  velox-kws inspect arming.bin\n"
                    "  velox-kws inspect result-before.bin result-after.bin\n");
    commands.run[command] = [files](Context&) {
        std::vector<std::filesystem::path> paths;
        std::ranges::transform(*files, std::back_inserter(paths), PathFromUtf8);
        return InspectFiles(paths);
    };
}

} // namespace velox::console

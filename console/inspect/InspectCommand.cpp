#include "console/inspect/InspectCommand.h"

#include "console/inspect/Inspection.h"
#include "console/inspect/InspectionText.h"
#include "console/text/Utf8Path.h"
#include "console/text/WriteWhole.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <memory>

namespace velox::console
{

namespace
{

constexpr std::uintmax_t LargestFile = 128U << 20U;

struct InspectedFile
{
    std::string name;
    std::vector<uint8_t> bytes;
    Inspection inspection;
};

InspectedFile ReadInspected(const std::filesystem::path& path)
{
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

bool Recognised(const InspectedFile& file)
{
    return file.inspection.kind != FileKind::Unknown && file.inspection.kind != FileKind::Empty;
}

std::string Count(std::size_t number, std::string_view what)
{
    return fmt::format("{} {}{}", number, what, number == 1 ? "" : "s");
}

std::string Verdict(const InspectedFile& file)
{
    if (file.inspection.kind == FileKind::Empty)
    {
        return file.name + " is empty.";
    }
    if (!Recognised(file))
    {
        return file.name + " is none of the files that inspect knows.";
    }
    const std::string_view kind = FileKindName(file.inspection.kind);
    if (file.inspection.errors.empty())
    {
        return fmt::format("{}: {}, nothing is wrong with it.", file.name, kind);
    }
    const InspectionError& error = file.inspection.errors.front();
    return fmt::format("{}: {} with {}, the first at {} ({}).", file.name, kind, Count(file.inspection.errors.size(), "error"),
                       OffsetText(error.offset), error.path);
}

std::string Verdict(const InspectionDifference& difference)
{
    if (difference.same)
    {
        return "The two files are the same.";
    }
    std::string where = Count(difference.fields.size(), "field");
    if (const std::size_t alone = difference.onlyInFirst.size() + difference.onlyInSecond.size(); alone > 0)
    {
        where += fmt::format(", {} in one file only", Count(alone, "field"));
    }
    if (!difference.ranges.empty())
    {
        where += fmt::format(", {} of bytes", Count(difference.ranges.size(), "range"));
    }
    return fmt::format("The two files differ: {}.", where);
}

ExitCode CodeOf(const InspectedFile& file)
{
    return !Recognised(file) ? ExitCode::BadInput : file.inspection.errors.empty() ? ExitCode::Success : ExitCode::Refused;
}

void Show(const InspectedFile& file, FieldsShown shown, const Style& style, Outcome* outcome)
{
    outcome->text += InspectionText(file.name, file.inspection, shown, style);
    outcome->results.Add(InspectionJson(file.name, file.inspection));
}

} // namespace

Outcome InspectFiles(const std::vector<std::filesystem::path>& files, bool everyField, const Style& style)
{
    const InspectedFile first = ReadInspected(files.front());
    Outcome outcome;
    if (files.size() == 1)
    {
        Show(first, everyField ? FieldsShown::Every : FieldsShown::Grouped, style, &outcome);
        outcome.exitCode = CodeOf(first);
        outcome.verdict = Verdict(first);
        return outcome;
    }

    const InspectedFile second = ReadInspected(files[1]);
    // What two files have in common is in the way of what tells them apart.
    const FieldsShown shown = everyField ? FieldsShown::Every : FieldsShown::None;
    Show(first, shown, style, &outcome);
    Show(second, shown, style, &outcome);
    const InspectionDifference difference = Compare(first.inspection, first.bytes, second.inspection, second.bytes);
    outcome.text += DifferenceText(difference, style);
    outcome.results.Add(DifferenceJson(difference));
    outcome.exitCode = difference.same ? ExitCode::Success : ExitCode::Refused;
    outcome.verdict = Verdict(difference);
    return outcome;
}

void AddInspectCommand(CLI::App& app, Commands& commands)
{
    CLI::App* command = app.add_subcommand("inspect", "Shows what stands in a firmware block, a model, a user model stream or a "
                                                      "threshold file, and what tells two of them apart");
    const auto files = std::make_shared<std::vector<std::string>>();
    command->add_option("FILE", *files, "one file, or two to compare")->required()->expected(1, 2);
    command->footer("  velox-kws inspect arming.bin\n"
                    "  velox-kws inspect result-before.bin result-after.bin\n");
    commands.run[command] = [files](Context& context) {
        std::vector<std::filesystem::path> paths;
        for (const std::string& file : *files)
        {
            paths.push_back(PathFromUtf8(file));
        }
        return InspectFiles(paths, context.log.verbose, context.style);
    };
}

} // namespace velox::console

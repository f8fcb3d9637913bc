#include "console/languages/MakeLanguage.h"

#include "console/hosting/Outputs.h"
#include "console/languages/ConfigurationEdit.h"
#include "console/languages/FileExchange.h"
#include "console/languages/LanguageRecordings.h"
#include "console/languages/MissEstimate.h"
#include "console/takes/TakeReport.h"
#include "console/text/Interruption.h"
#include "console/text/LanguageName.h"
#include "console/text/Utf8Path.h"
#include "console/text/Wording.h"
#include "engine/base/CountInterval.h"
#include "engine/training/LanguageTrainer.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <thread>

namespace velox::console
{

namespace
{

/// As the configuration names it: absolute, without a separator at its end.
std::filesystem::path WholePath(const std::filesystem::path& path)
{
    const std::filesystem::path whole = std::filesystem::absolute(path).lexically_normal();
    return whole.has_filename() ? whole : whole.parent_path();
}

/// The elements that name files, and the files, in the order in which they are written.
LanguageEntry EntryOf(const LanguageRequest& request)
{
    const std::string name = request.name.empty() ? std::to_string(request.language) : request.name;
    return {request.language,
            request.qualityThreshold,
            {{"keyphraseModel", "kp_" + name + ".bin"},
             {"acousticModel", "am_" + name + ".bin"},
             {"znormPopulation", "zn_" + name + ".bin"},
             {"fwBlob", "fw_" + name + ".bin"},
             {"preDefinedKpdSensitivity", "kpd_pre_" + name + ".txt"},
             {"userDefinedKpdSensitivity", "kpd_user_" + name + ".txt"}}};
}

/// Where the language goes; no other run writes there meanwhile.
struct LanguagePlace
{
    explicit LanguagePlace(const LanguageRequest& request)
        : folder(WholePath(request.folder)), entry(EntryOf(request)), files(folder),
          configuration(LockFile(WholePath(request.configuration) += ".velox-kws-lock")),
          edit(AddLanguage(request.configuration, folder, entry, request.replace))
    {
        for (const auto& [element, name] : entry.files)
        {
            // Files that no configured language answers for are somebody's.
            if (!request.replace && std::filesystem::exists(folder / name))
            {
                throw CommandFailure(ExitCode::WriteFailed, fmt::format("{} is there already.", Utf8(folder / name)),
                                     "Add --replace to overwrite it, or choose other names with --name.");
            }
        }
    }

    std::filesystem::path folder;
    LanguageEntry entry;
    FileExchange files;
    std::shared_ptr<void> configuration;
    ConfigurationEdit edit;
};

void RefusePlaces(const LanguageRequest& request, const LanguageFiles& read, const Context& context)
{
    const Output configuration{request.configuration, OutputKind::Configuration};
    RefuseToReplace(context, read.all, {&configuration, 1});
    std::vector<std::string> folders = request.background;
    folders.push_back(Utf8(request.takes));
    const bool isFile = std::filesystem::exists(request.folder) && !std::filesystem::is_directory(request.folder);
    const bool isRead = std::ranges::any_of(folders, [&](const std::string& folder) {
        const std::filesystem::path way = WholePath(request.folder).lexically_relative(WholePath(PathFromUtf8(folder)));
        return !way.empty() && *way.begin() != "..";
    });
    if (isFile || isRead)
    {
        const char* why = isFile ? " is a file, and no folder for the language's files."
                                 : " is read for recordings: the language's files would be among them.";
        throw CommandFailure(ExitCode::Usage, Utf8(request.folder) + why, "Name another folder with --out. Nothing was changed.");
    }
}

engine::LanguageModels Train(const engine::LanguageMaterial& material, const engine::LanguageOptions& options)
{
    try
    {
        std::optional<engine::LanguageModels> models = engine::TrainLanguage(material, options);
        StopIfInterrupted();
        return std::move(models.value());
    }
    catch (const std::invalid_argument& fault)
    {
        throw CommandFailure(ExitCode::BadInput, fmt::format("The phrase cannot be learned: {}.", fault.what()),
                             "Give more recordings: twenty voices and half an hour of background make a good language.");
    }
}

std::vector<uint8_t> Bytes(const std::string& text)
{
    return {text.begin(), text.end()};
}

/// Puts the models in place, then the configuration; all is undone when a step fails.
void Write(const engine::LanguageModels& models, const LanguageRequest& request, std::span<const float> take,
           const ReadBack& readBack, LanguagePlace* place)
{
    const auto number = [](double threshold) {
        return Bytes(fmt::format("{}\n", static_cast<float>(threshold)));
    };
    const std::array contents{models.keyphraseModel,
                              models.acousticModel,
                              models.znormPopulation,
                              models.firmwareModel,
                              number(models.preDefinedThreshold),
                              number(models.userDefinedThreshold)};
    for (std::size_t i = 0; i < contents.size(); ++i)
    {
        place->files.Add(place->entry.files[i].second, contents[i]);
    }
    const std::filesystem::path& constraints = place->edit.constraints;
    if (constraints == place->folder / "constraints.txt" && !std::filesystem::exists(constraints))
    {
        place->files.Add(constraints, {});
    }
    place->files.Add(WholePath(request.configuration), Bytes(place->edit.text));
    place->files.PutInPlace();
    try
    {
        readBack(request, take);
    }
    catch (const CommandFailure& failure)
    {
        throw CommandFailure(failure.exitCode, fmt::format("The language was learned, but cannot be used: {}", failure.what()),
                             failure.fix + " All files are as they were.");
    }
    place->files.Keep();
}

void AddFiles(const LanguagePlace& place, const LanguageRequest& request, Report* report)
{
    report->facts.insert(report->facts.end(), {{"directory", Utf8(place.folder), "folder", Utf8(place.folder)},
                                               {"configuration", Utf8(request.configuration), "configuration",
                                                fmt::format("{}, language {}", Utf8(request.configuration),
                                                            place.edit.replaces ? "replaced" : "added")},
                                               {"replaced", place.edit.replaces}});
    for (const auto& [element, name] : place.entry.files)
    {
        report->facts.push_back({element, name});
    }
}

/// How far the thresholds can be trusted to give the rate that was asked for.
void AddThresholds(const engine::LanguageModels& models, double alarmsPerHour, Report* report)
{
    const double hours = models.backgroundHours;
    const double expected = alarmsPerHour * hours;
    const engine::CountInterval rate = engine::RateFromCount(std::lround(expected), hours);
    report->facts.insert(report->facts.end(),
                         {{"preDefinedThreshold", models.preDefinedThreshold, "thresholds",
                           fmt::format("{:g} for everybody, {:g} for a user's own model", models.preDefinedThreshold,
                                       models.userDefinedThreshold)},
                          {"userDefinedThreshold", models.userDefinedThreshold},
                          {"falseAlarmsPerHour", alarmsPerHour, "false alarms",
                           fmt::format("aimed at {:g} per hour; the background leaves {:.2f} to {:.2f} open (95 %)",
                                       alarmsPerHour, rate.least, rate.most)},
                          {"expectedFalseAlarms", expected},
                          {"falseAlarmsPerHourLeast", rate.least},
                          {"falseAlarmsPerHourMost", rate.most}});
    const std::string text = fmt::format(
        "one expects {:.1f} false alarms in {:.2f} h of background, and more for sound unlike it; to know the rate to "
        "within twice, {:.0f} h are needed",
        expected, hours, static_cast<double>(engine::CountForTwice) / alarmsPerHour);
    report->remarks.push_back({Tone::Note, "Background", text, ""});
}

/// The engine's sentence as a remark.
Remark WarningOf(std::string sentence)
{
    sentence.front() = static_cast<char>(std::tolower(static_cast<unsigned char>(sentence.front())));
    sentence.resize(sentence.find_last_not_of('.') + 1);
    return {Tone::Warning, "Material", sentence, ""};
}

void LearnAndWrite(const LanguageRecordings& recordings, const LanguageRequest& request, Context& context,
                   const ReadBack& readBack, Report* report)
{
    const std::vector<engine::PhraseTake>& takes = recordings.material.takes;
    const std::size_t voices = VoicesOf(takes).size();
    const double hours = recordings.BackgroundHours();
    report->facts = {
        {"language", request.language},
        {"name", LanguageName(request.language)},
        {"takes", takes.size(), "learned from",
         fmt::format("{} of {}, {:.2f} h of background", Counted(takes.size(), "take"), Counted(voices, "voice"), hours)},
        {"voices", voices},
        {"backgroundHours", hours}};
    engine::LanguageOptions options = request.training;
    options.threads = static_cast<int>(std::max(1U, std::thread::hardware_concurrency()));
    options.progress = [&](double share) {
        return context.progress.Continue(share);
    };
    context.progress.Begin("Learning the phrase");
    const engine::LanguageModels models = Train(recordings.material, options);
    std::ranges::transform(models.warnings, std::back_inserter(report->remarks), WarningOf);
    AddThresholds(models, options.falseAlarmsPerHour, report);
    AddMisses(models.heldOutScores, voices, options.falseAlarmsPerHour, report);
    LanguagePlace place(request);
    Write(models, request, takes.front().samples, readBack, &place);
    AddFiles(place, request, report);
    report->verdict =
        fmt::format("Language {} is learned and stands in {}.", LanguageText(request.language), Utf8(request.configuration));
}

} // namespace

Report MakeLanguage(const LanguageRequest& request, Context& context, const ReadBack& readBack)
{
    const LanguageFiles files = FindLanguageFiles(request.takes, request.background);
    RefusePlaces(request, files, context);
    {
        const LanguagePlace trial(request); // minutes of training would be lost otherwise
    }
    LanguageRecordings recordings = ReadLanguageRecordings(files, &context.progress);
    Report report;
    report.results = std::move(recordings.leftOut);
    report.remarks = std::move(recordings.oddities);
    try
    {
        LearnAndWrite(recordings, request, context, readBack, &report);
        return report;
    }
    catch (const CommandFailure& failure)
    {
        if (failure.exitCode == ExitCode::Interrupted)
        {
            throw;
        }
        return Failed(std::move(report), failure);
    }
}

} // namespace velox::console

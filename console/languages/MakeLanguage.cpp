#include "console/languages/MakeLanguage.h"

#include "console/hosting/Outputs.h"
#include "console/languages/AlarmRate.h"
#include "console/languages/ConfigurationEdit.h"
#include "console/languages/FileExchange.h"
#include "console/languages/LanguageRecordings.h"
#include "console/languages/MissEstimate.h"
#include "console/takes/TakeReport.h"
#include "console/text/Interruption.h"
#include "console/text/LanguageName.h"
#include "console/text/Utf8Path.h"
#include "console/text/Wording.h"
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
constexpr std::array<std::pair<const char*, const char*>, 6> Files{{{"keyphraseModel", "kp_{}.bin"},
                                                                    {"acousticModel", "am_{}.bin"},
                                                                    {"znormPopulation", "zn_{}.bin"},
                                                                    {"fwBlob", "fw_{}.bin"},
                                                                    {"preDefinedKpdSensitivity", "kpd_pre_{}.txt"},
                                                                    {"userDefinedKpdSensitivity", "kpd_user_{}.txt"}}};

LanguageEntry EntryOf(const LanguageRequest& request)
{
    const std::string name = request.name.empty() ? std::to_string(request.language) : request.name;
    LanguageEntry entry{request.language, request.qualityThreshold, {}};
    for (const auto& [element, file] : Files)
    {
        entry.files.emplace_back(element, fmt::format(fmt::runtime(file), name));
    }
    return entry;
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

/// Whether a file would be read together with the folder.
bool LiesIn(const std::filesystem::path& file, const std::string& folder)
{
    const std::filesystem::path way = WholePath(file).lexically_relative(WholePath(PathFromUtf8(folder)));
    return !way.empty() && *way.begin() != "..";
}

void RefusePlaces(const LanguageRequest& request, const LanguageFiles& read, const Context& context)
{
    std::vector<std::filesystem::path> inputs = read.takes;
    inputs.insert(inputs.end(), read.background.begin(), read.background.end());
    const Output configuration{request.configuration, OutputKind::Configuration};
    RefuseToReplace(context, inputs, {&configuration, 1});
    std::vector<std::string> folders = request.background;
    folders.push_back(Utf8(request.takes));
    const bool isFile = std::filesystem::exists(request.folder) && !std::filesystem::is_directory(request.folder);
    if (isFile || std::ranges::any_of(folders, [&](const std::string& folder) { return LiesIn(request.folder, folder); }))
    {
        throw CommandFailure(ExitCode::Usage,
                             Utf8(request.folder) + (isFile
                                                         ? " is a file, and no folder for the language's files."
                                                         : " is read for recordings: the language's files would be among them."),
                             "Name another folder with --out. Nothing was changed.");
    }
}

engine::LanguageOptions OptionsOf(const LanguageRequest& request, Progress* progress)
{
    engine::LanguageOptions options;
    options.falseAlarmsPerHour = request.falseAlarmsPerHour;
    options.batches = request.batches;
    options.copies = request.copies;
    options.threads = static_cast<int>(std::max(1U, std::thread::hardware_concurrency()));
    options.progress = [progress](double share) {
        return progress->Continue(share);
    };
    return options;
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

/// A number and a line end; the shortest text that reads back as the same number.
std::vector<uint8_t> ThresholdBytes(double threshold)
{
    return Bytes(fmt::format("{}\n", static_cast<float>(threshold)));
}

/// Puts the models in place, then the configuration; all is undone when a step fails.
void Write(const engine::LanguageModels& models, const LanguageRequest& request, std::span<const float> take,
           const ReadBack& readBack, LanguagePlace* place)
{
    const std::array contents{models.keyphraseModel,
                              models.acousticModel,
                              models.znormPopulation,
                              models.firmwareModel,
                              ThresholdBytes(models.preDefinedThreshold),
                              ThresholdBytes(models.userDefinedThreshold)};
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
    report->facts.push_back({"directory", Utf8(place.folder), "folder", Utf8(place.folder)});
    report->facts.push_back(
        {"configuration", Utf8(request.configuration), "configuration",
         fmt::format("{}, language {}", Utf8(request.configuration), place.edit.replaces ? "replaced" : "added")});
    report->facts.push_back({"replaced", place.edit.replaces});
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
    const RateInterval rate = RateFromCount(std::lround(expected), hours);
    const std::vector<Fact> facts{
        {"preDefinedThreshold", models.preDefinedThreshold, "thresholds",
         fmt::format("{:g} for everybody, {:g} for a user's own model", models.preDefinedThreshold, models.userDefinedThreshold)},
        {"userDefinedThreshold", models.userDefinedThreshold},
        {"falseAlarmsPerHour", alarmsPerHour, "false alarms",
         fmt::format("aimed at {:g} per hour; the background leaves {:.2f} to {:.2f} open (95 %)", alarmsPerHour, rate.least,
                     rate.most)},
        {"expectedFalseAlarms", expected},
        {"falseAlarmsPerHourLeast", rate.least},
        {"falseAlarmsPerHourMost", rate.most}};
    report->facts.insert(report->facts.end(), facts.begin(), facts.end());
    report->remarks.push_back(
        {Tone::Note, "Background",
         fmt::format(
             "one expects {:.1f} false alarms in {:.2f} h of background, and more for sound unlike it; to know the rate to "
             "within twice, {:.0f} h are needed",
             expected, hours, static_cast<double>(CountForTwice) / alarmsPerHour),
         ""});
}

void AddMisses(const HeldOutTakes& takes, double alarmsPerHour, Report* report)
{
    const auto all = std::ssize(takes.scores);
    const int64_t missed = takes.MissedAt(alarmsPerHour);
    const RateInterval share = ShareFromCount(missed, all);
    const std::vector<Fact> facts{
        {"missed", missed, "misses",
         fmt::format("{} of {} of {} that were not learned from; that leaves {:.1f} % to {:.1f} % open (95 %)", missed,
                     Counted(takes.scores.size(), "take"), Counted(takes.voices, "voice"), 100.0 * share.least,
                     100.0 * share.most)},
        {"heldOutTakes", all},
        {"heldOutVoices", takes.voices},
        {"missShareLeast", share.least},
        {"missShareMost", share.most}};
    report->facts.insert(report->facts.end(), facts.begin(), facts.end());
    report->remarks.push_back({Tone::Note, "Misses",
                               "the misses are those of a second, shorter training without these voices, in quiet; the language "
                               "has learned from all voices and should do no worse",
                               ""});
    report->chart = MissChart(takes, alarmsPerHour);
}

/// The engine's sentence as a remark.
Remark WarningOf(std::string sentence)
{
    sentence.front() = static_cast<char>(std::tolower(static_cast<unsigned char>(sentence.front())));
    sentence.resize(sentence.find_last_not_of('.') + 1);
    return {Tone::Warning, "Material", sentence, ""};
}

/// @param material  is used up
void EstimateMisses(LanguageRecordings&& recordings, const LanguageRequest& request, Context& context, Report* report)
{
    if (request.noEstimate)
    {
        return;
    }
    std::optional<HeldOutTakes> takes;
    if (recordings.Voices() >= LeastVoicesForEstimate)
    {
        context.progress.Begin("Estimating the misses");
        takes = ScoreHeldOut(std::move(recordings.material), OptionsOf(request, &context.progress));
        StopIfInterrupted();
    }
    if (takes)
    {
        AddMisses(*takes, request.falseAlarmsPerHour, report);
        return;
    }
    report->remarks.push_back(
        {Tone::Note, "NoEstimate",
         fmt::format("the misses are not estimated: that takes {} voices and two minutes of background", LeastVoicesForEstimate),
         "Give more recordings."});
}

void LearnAndWrite(LanguageRecordings&& recordings, const LanguageRequest& request, Context& context, const ReadBack& readBack,
                   Report* report)
{
    const std::size_t takes = recordings.material.takes.size();
    const std::size_t voices = recordings.Voices();
    const double hours = recordings.BackgroundHours();
    report->facts = {{"language", request.language},
                     {"name", LanguageName(request.language)},
                     {"takes", takes, "learned from",
                      fmt::format("{} of {}, {:.2f} h of background", Counted(takes, "take"), Counted(voices, "voice"), hours)},
                     {"voices", voices},
                     {"backgroundHours", hours}};
    context.progress.Begin("Learning the phrase");
    const engine::LanguageModels models = Train(recordings.material, OptionsOf(request, &context.progress));
    std::ranges::transform(models.warnings, std::back_inserter(report->remarks), WarningOf);
    AddThresholds(models, request.falseAlarmsPerHour, report);
    const std::vector<float> take = recordings.material.takes.front().samples;
    EstimateMisses(std::move(recordings), request, context, report);
    LanguagePlace place(request);
    Write(models, request, take, readBack, &place);
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
        // Minutes of training would be lost otherwise.
        const LanguagePlace trial(request);
    }
    LanguageRecordings recordings = ReadLanguageRecordings(files, &context.progress);
    Report report;
    report.results = std::move(recordings.leftOut);
    report.remarks = std::move(recordings.oddities);
    try
    {
        LearnAndWrite(std::move(recordings), request, context, readBack, &report);
    }
    catch (const CommandFailure& failure)
    {
        if (failure.exitCode == ExitCode::Interrupted)
        {
            throw;
        }
        return Failed(std::move(report), failure);
    }
    return report;
}

} // namespace velox::console

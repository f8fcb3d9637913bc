#include "console/languages/MakeLanguage.h"

#include "console/doctor/NamedFile.h"
#include "console/languages/AlarmRate.h"
#include "console/languages/ConfigurationEdit.h"
#include "console/languages/FileExchange.h"
#include "console/languages/LanguageRecordings.h"
#include "console/text/FieldLine.h"
#include "console/text/Interruption.h"
#include "console/text/LanguageName.h"
#include "console/text/Utf8Path.h"
#include "console/text/WriteWhole.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <thread>

namespace velox::console
{

namespace
{

using Json = nlohmann::ordered_json;

constexpr double LeastBackgroundHours = 1.0 / 60.0;
constexpr std::size_t LeastTakes = 2;

/// How far the thresholds can be trusted to give the rate that was asked for.
struct ThresholdConfidence
{
    double hours = 0.0;          ///< of background
    double expectedAlarms = 0.0; ///< in them, at the rate
    RateInterval rate;           ///< that a count of so many alarms would leave open
    double hoursForTwice = 0.0;  ///< that would tell the rate to within twice

    ThresholdConfidence(double alarmsPerHour, double backgroundHours)
        : hours(backgroundHours), expectedAlarms(alarmsPerHour * backgroundHours),
          rate(RateFromCount(std::lround(expectedAlarms), backgroundHours)),
          hoursForTwice(static_cast<double>(CountForTwice) / alarmsPerHour)
    {
    }
};

/// Everything that a run has found out.
struct MadeLanguage
{
    std::filesystem::path folder;
    LanguageEntry entry;
    ConfigurationEdit edit;
    std::size_t takes = 0;
    std::size_t voices = 0;
    std::vector<LeftOutRecording> leftOut;
    engine::LanguageModels models;
    std::vector<std::string> warnings;
};

/// As the configuration names it: absolute, without a separator at its end.
std::filesystem::path WholePath(const std::filesystem::path& path)
{
    const std::filesystem::path whole = std::filesystem::absolute(path).lexically_normal();
    return whole.has_filename() ? whole : whole.parent_path();
}

LanguageEntry EntryOf(const LanguageRequest& request)
{
    const std::string name = request.name.empty() ? std::to_string(request.language) : request.name;
    return {request.language,
            request.qualityThreshold,
            fmt::format("kp_{}.bin", name),
            fmt::format("am_{}.bin", name),
            fmt::format("zn_{}.bin", name),
            fmt::format("fw_{}.bin", name),
            fmt::format("kpd_pre_{}.txt", name),
            fmt::format("kpd_user_{}.txt", name)};
}

/// Files that no configured language answers for are somebody's.
void CheckNoFileIsLost(const MadeLanguage& made, bool replace)
{
    const LanguageEntry& entry = made.entry;
    for (const std::string& name : {entry.keyphraseModel, entry.acousticModel, entry.znormPopulation, entry.firmwareModel,
                                    entry.preDefinedThreshold, entry.userDefinedThreshold})
    {
        if (!replace && std::filesystem::exists(made.folder / name))
        {
            throw CommandFailure(ExitCode::WriteFailed, fmt::format("{} is there already.", Utf8(made.folder / name)),
                                 "Add --replace to overwrite it, or choose other names with --name.");
        }
    }
}

/// Minutes of training would be lost otherwise.
void CheckWritable(const std::filesystem::path& folder)
{
    const FileExchange trial(folder);
}

void CheckMaterial(const LanguageRecordings& recordings, const LanguageRequest& request)
{
    std::string why = recordings.leftOut.empty() ? "" : " Left out:";
    for (const LeftOutRecording& left : recordings.leftOut)
    {
        why += fmt::format(" {}: {}.", left.file, left.why.text);
    }
    if (const std::size_t takes = recordings.material.takes.size(); takes < LeastTakes)
    {
        throw CommandFailure(ExitCode::BadInput,
                             fmt::format("{} holds {} {} of the phrase that can be used; at least {} are needed.{}",
                                         Utf8(request.takes), takes, takes == 1 ? "recording" : "recordings", LeastTakes, why),
                             "Record the phrase with many voices: twenty make a good language.");
    }
    if (const double hours = recordings.BackgroundHours(); hours < LeastBackgroundHours)
    {
        throw CommandFailure(
            ExitCode::BadInput,
            fmt::format("There are {:.0f} s of background; at least 60 s are needed, better hours.{}", 3600.0 * hours, why),
            "Give recordings of other speech and of sounds with --background.");
    }
}

engine::LanguageModels Train(const LanguageRecordings& recordings, const LanguageRequest& request, Progress* progress)
{
    engine::LanguageOptions options;
    options.falseAlarmsPerHour = request.falseAlarmsPerHour;
    options.batches = request.batches;
    options.copies = request.copies;
    options.threads = static_cast<int>(std::max(1U, std::thread::hardware_concurrency()));
    options.progress = [progress](double share) {
        return progress->Continue(share);
    };
    progress->Begin("Learning the phrase");
    try
    {
        std::optional<engine::LanguageModels> models = engine::TrainLanguage(recordings.material, options);
        StopIfInterrupted();
        return std::move(models.value());
    }
    catch (const std::invalid_argument& fault)
    {
        throw CommandFailure(ExitCode::BadInput, fmt::format("The phrase cannot be learned: {}.", fault.what()),
                             "Check the recordings, or give more of them.");
    }
}

/// A number and a line end; the shortest text that reads back as the same number.
std::vector<uint8_t> ThresholdBytes(double threshold)
{
    const std::string text = fmt::format("{}\n", static_cast<float>(threshold));
    return {text.begin(), text.end()};
}

/// Puts the models in place, then the configuration; all is undone when a step fails.
void Write(const MadeLanguage& made, const std::filesystem::path& configuration)
{
    FileExchange files(made.folder);
    files.Add(made.entry.keyphraseModel, made.models.keyphraseModel);
    files.Add(made.entry.acousticModel, made.models.acousticModel);
    files.Add(made.entry.znormPopulation, made.models.znormPopulation);
    files.Add(made.entry.firmwareModel, made.models.firmwareModel);
    files.Add(made.entry.preDefinedThreshold, ThresholdBytes(made.models.preDefinedThreshold));
    files.Add(made.entry.userDefinedThreshold, ThresholdBytes(made.models.userDefinedThreshold));
    if (made.edit.constraints == made.folder / "constraints.txt" && !std::filesystem::exists(made.edit.constraints))
    {
        files.Add("constraints.txt", {});
    }
    files.PutInPlace();
    std::error_code writingFails;
    std::filesystem::create_directories(WholePath(configuration).parent_path(), writingFails);
    WriteWhole(configuration, made.edit.text);
    files.Keep();
}

std::vector<std::string> Warnings(const MadeLanguage& made, const std::filesystem::path& configuration)
{
    std::vector<std::string> warnings = made.models.warnings;
    for (const std::filesystem::path& path : {made.folder, configuration})
    {
        if (!IsAscii(Utf8(path)))
        {
            warnings.push_back(
                fmt::format("The library may not be able to open {}: its path has letters beyond ASCII.", Utf8(path)));
        }
    }
    return warnings;
}

std::string ConfidenceText(double alarmsPerHour, const ThresholdConfidence& confidence)
{
    return fmt::format(
        "The thresholds rest on {:.2f} h of background. At {:g} false alarms per hour one expects {:.1f} in it; such a "
        "count leaves the true rate open between {:.2f} and {:.2f} per hour (95 %), for sound like this background. To "
        "know it to within twice, {:.0f} h are needed.\n",
        confidence.hours, alarmsPerHour, confidence.expectedAlarms, confidence.rate.least, confidence.rate.most,
        confidence.hoursForTwice);
}

std::string Text(const MadeLanguage& made, const LanguageRequest& request, const ThresholdConfidence& confidence,
                 const Style& style)
{
    std::string text = FieldLine(
        "learned from", fmt::format("{} takes of {} voices, {:.2f} h of background", made.takes, made.voices, confidence.hours));
    for (const LeftOutRecording& left : made.leftOut)
    {
        text += fmt::format("  {} {}: {}{}\n", style.Bad("left out"), left.file, left.why.text,
                            left.why.fix.empty() ? "" : ". " + left.why.fix);
    }
    for (const std::string& warning : made.warnings)
    {
        text += fmt::format("  {} {}\n", style.Bad("warning"), warning);
    }
    text += FieldLine("folder", Utf8(made.folder));
    text += FieldLine("configuration",
                      fmt::format("{}, language {}", Utf8(request.configuration), made.edit.replaces ? "replaced" : "added"));
    text += FieldLine("thresholds", fmt::format("{:g} for everybody, {:g} for a user's own model",
                                                made.models.preDefinedThreshold, made.models.userDefinedThreshold));
    return text + ConfidenceText(request.falseAlarmsPerHour, confidence);
}

Json LeftOutJson(const std::vector<LeftOutRecording>& leftOut)
{
    Json all = Json::array();
    for (const LeftOutRecording& left : leftOut)
    {
        all.push_back({{"file", left.file}, {"code", left.why.code}, {"reason", left.why.text}, {"fix", left.why.fix}});
    }
    return all;
}

Json Result(const MadeLanguage& made, const LanguageRequest& request, const ThresholdConfidence& confidence)
{
    const LanguageEntry& entry = made.entry;
    return {{"language", entry.id},
            {"name", LanguageName(entry.id)},
            {"configuration", Utf8(request.configuration)},
            {"replaced", made.edit.replaces},
            {"directory", Utf8(made.folder)},
            {"files",
             {{"keyphraseModel", entry.keyphraseModel},
              {"acousticModel", entry.acousticModel},
              {"znormPopulation", entry.znormPopulation},
              {"fwBlob", entry.firmwareModel},
              {"preDefinedKpdSensitivity", entry.preDefinedThreshold},
              {"userDefinedKpdSensitivity", entry.userDefinedThreshold}}},
            {"takes", made.takes},
            {"voices", made.voices},
            {"leftOut", LeftOutJson(made.leftOut)},
            {"warnings", made.warnings},
            {"preDefinedThreshold", made.models.preDefinedThreshold},
            {"userDefinedThreshold", made.models.userDefinedThreshold},
            {"falseAlarmsPerHour", request.falseAlarmsPerHour},
            {"backgroundHours", confidence.hours},
            {"expectedFalseAlarms", confidence.expectedAlarms},
            {"falseAlarmsPerHour95", {{"least", confidence.rate.least}, {"most", confidence.rate.most}}}};
}

} // namespace

Outcome MakeLanguage(const LanguageRequest& request, Context& context)
{
    MadeLanguage made;
    made.folder = WholePath(request.folder);
    made.entry = EntryOf(request);
    made.edit = AddLanguage(request.configuration, made.folder, made.entry, request.replace);
    CheckNoFileIsLost(made, request.replace);
    CheckWritable(made.folder);
    CheckWritable(WholePath(request.configuration).parent_path());

    LanguageRecordings recordings = ReadLanguageRecordings(request.takes, request.background, &context.progress);
    CheckMaterial(recordings, request);
    made.models = Train(recordings, request, &context.progress);
    made.takes = recordings.material.takes.size();
    made.voices = recordings.Voices();
    made.leftOut = std::move(recordings.leftOut);
    made.warnings = Warnings(made, request.configuration);
    Write(made, request.configuration);

    const ThresholdConfidence confidence(request.falseAlarmsPerHour, made.models.backgroundHours);
    Outcome outcome;
    outcome.verdict =
        fmt::format("Language {} is learned and stands in {}.", LanguageText(request.language), Utf8(request.configuration));
    outcome.text = Text(made, request, confidence, context.style);
    outcome.results.Add(Result(made, request, confidence));
    return outcome;
}

} // namespace velox::console

#include "console/takes/EnrollCommand.h"

#include "console/hosting/LogExplanation.h"
#include "console/hosting/UserModelStream.h"
#include "console/takes/TakeComparison.h"
#include "console/takes/TakeVerifier.h"
#include "console/text/FieldLine.h"
#include "console/text/Interruption.h"
#include "console/text/LanguageName.h"
#include "console/text/StatusText.h"
#include "console/text/Utf8Path.h"
#include "console/text/WriteWhole.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <memory>

namespace velox::console
{

namespace
{

struct EnrollOptions
{
    DetectorOptions detector;
    std::string language;
    std::vector<std::string> files;
    std::string model;
    bool skipRefused = false;
};

/// One run of the command, step by step.
class EnrollmentRun
{
public:
    EnrollmentRun(const EnrollOptions& enrollOptions, const Context& commandContext)
        : options(enrollOptions), context(commandContext), verifier(options.detector, options.language, context.log)
    {
    }

    Outcome Run()
    {
        takes = verifier.Verify(options.files, context.progress);
        CompareTakes();
        if (!MayTrain())
        {
            return Conclude(ExitCodeOf(takes), Verdict(takes) + " No model was made.");
        }
        if (!Train())
        {
            return Conclude(ExitCode::Refused,
                            Again("The engine makes no model of these takes. Record again: ") + " No model was made.");
        }
        ListenWithTheModel();
        WriteWhole(PathFromUtf8(options.model), model);
        return ConcludeTrained();
    }

private:
    void CompareTakes();
    bool MayTrain() const;
    bool Train();
    bool NameLeftOutTakes(std::span<const LoggedLine> lines);
    std::string Again(const std::string& before) const;
    void ListenWithTheModel();
    Outcome ConcludeTrained() const;
    Outcome Conclude(ExitCode exitCode, const std::string& verdict) const;

    const EnrollOptions& options;
    const Context& context;
    TakeVerifier verifier;
    std::vector<TakeReport> takes;
    std::vector<std::size_t> doubtful; ///< accepted takes that are not like the others, or that the engine left out
    std::vector<uint8_t> model;
    std::optional<std::size_t> heard; ///< takes that the new model hears
};

/// Names the takes that are not like the others.
void EnrollmentRun::CompareTakes()
{
    std::vector<std::size_t> numbers;
    std::vector<const Audio*> recordings;
    std::vector<TakeFigures> figures;
    for (std::size_t i = 0; i < takes.size(); ++i)
    {
        // A take with a fault of its own is named for it already.
        if (const engine::TakeReview& review = takes[i].review; takes[i].accepted && takes[i].remarks.empty() && review.phrase)
        {
            numbers.push_back(i);
            recordings.push_back(&takes[i].audio);
            const auto samples = static_cast<double>(review.phrase->endSample - review.phrase->startSample);
            figures.push_back({review.level, samples / engine::SampleRate, review.phrase->score});
        }
    }
    if (const StandInModels& models = verifier.Models(); models.acoustic && models.population)
    {
        context.progress.Begin("Comparing");
        const auto scores = ScoreAgainstOthers(recordings, *models.acoustic, *models.population, &context.progress);
        for (std::size_t i = 0; i < figures.size(); ++i)
        {
            figures[i].likeTheOthers = scores[i];
        }
    }
    const auto outliers = FindOutliers(figures, ReadThreshold(verifier.Configured().userDefinedThreshold));
    for (std::size_t i = 0; i < outliers.size(); ++i)
    {
        if (outliers[i])
        {
            takes[numbers[i]].remarks.push_back(*outliers[i]);
            doubtful.push_back(numbers[i]);
        }
    }
}

bool EnrollmentRun::MayTrain() const
{
    const auto accepted = std::count_if(takes.begin(), takes.end(), [](const TakeReport& take) { return take.accepted; });
    return options.skipRefused ? accepted > 0 : accepted == static_cast<std::ptrdiff_t>(takes.size());
}

/// @return whether there is a model; without one a take is named
/// @throws CommandFailure when it was no take's fault
bool EnrollmentRun::Train()
{
    StopIfInterrupted();
    std::vector<std::span<const float>> recordings;
    for (const TakeReport& take : takes)
    {
        if (take.accepted)
        {
            recordings.emplace_back(take.audio.samples);
        }
    }
    const ComPointer<IStream> stream = EmptyStream();
    const Answer answer = verifier.Adapter().Train(stream.get(), verifier.Language(), recordings);
    if (!answer.Succeeded())
    {
        doubtful.clear(); // those that made it fail are named alone
    }
    const bool takesAtFault = NameLeftOutTakes(answer.lines);
    if (!answer.Succeeded() && !takesAtFault)
    {
        throw ExplainFailure("Training", answer.result, answer.lines);
    }
    if (answer.Succeeded())
    {
        model = Content(stream.get());
    }
    return answer.Succeeded();
}

/// The library goes on without a take that the engine refuses: nobody would know.
/// @return whether there is one
bool EnrollmentRun::NameLeftOutTakes(std::span<const LoggedLine> lines)
{
    std::vector<std::size_t> used;
    for (std::size_t i = 0; i < takes.size(); ++i)
    {
        if (takes[i].accepted)
        {
            used.push_back(i);
        }
    }
    const std::vector<LeftOutTake> leftOutTakes = FindLeftOutTakes(lines);
    for (const LeftOutTake& leftOut : leftOutTakes)
    {
        const std::size_t take = used.at(leftOut.index);
        takes[take].remarks.push_back({"LeftOut",
                                       "left out of the training: the engine reports " + EngineStatusText(leftOut.engineStatus),
                                       "Record it again, as clearly as the others."});
        doubtful.push_back(take);
    }
    return !leftOutTakes.empty();
}

/// Names the takes that are better recorded again; nothing without any.
std::string EnrollmentRun::Again(const std::string& before) const
{
    std::string names;
    for (std::size_t i = 0; i < takes.size(); ++i)
    {
        if (std::find(doubtful.begin(), doubtful.end(), i) != doubtful.end())
        {
            names += (names.empty() ? "" : ", ") + takes[i].file;
        }
    }
    return names.empty() ? "" : before + names + ".";
}

/// How many of the takes the new model would have heard.
void EnrollmentRun::ListenWithTheModel()
{
    const std::optional<double> threshold = ReadThreshold(verifier.Configured().userDefinedThreshold);
    engine::PhraseModel made;
    if (!threshold || !ReadWholePhraseModel(model, &made))
    {
        return;
    }
    heard = static_cast<std::size_t>(std::count_if(takes.begin(), takes.end(), [&](const TakeReport& take) {
        return take.accepted && ScoreWith(made, take.audio.samples) > *threshold;
    }));
}

Outcome EnrollmentRun::ConcludeTrained() const
{
    const auto used = std::count_if(takes.begin(), takes.end(), [](const TakeReport& take) { return take.accepted; });
    std::string verdict = fmt::format("Enrolled: {} of {} from {} take{}.", options.model, LanguageText(verifier.Language()),
                                      used, used == 1 ? "" : "s");
    verdict += Again(" Better to record again: ");
    Outcome outcome = Conclude(ExitCode::Success, verdict);
    outcome.text += FieldLine("Model", fmt::format("{}, {} bytes", options.model, model.size()));
    if (heard)
    {
        outcome.text += FieldLine("Hears", fmt::format("{} of the {} takes", *heard, used));
    }
    outcome.results.Add({{"model", options.model},
                         {"bytes", model.size()},
                         {"takes", used},
                         {"takesHeard", heard ? nlohmann::ordered_json(*heard) : nlohmann::ordered_json(nullptr)}});
    return outcome;
}

Outcome EnrollmentRun::Conclude(ExitCode exitCode, const std::string& verdict) const
{
    Outcome outcome{exitCode, verdict, ""};
    for (const TakeReport& take : takes)
    {
        outcome.text += TakeText(take, outcome.results.Count() + 1, context.style);
        outcome.results.Add(TakeJson(take));
    }
    return outcome;
}

} // namespace

void AddEnrollCommand(CLI::App& app, Commands& commands)
{
    CLI::App* command = app.add_subcommand("enroll", "Train a user's model from recordings of the key phrase");
    const auto options = std::make_shared<EnrollOptions>();
    command->add_option("LANG", options->language, "Language: en-US, 1033 or 0x409")->required()->type_name("");
    command->add_option("WAV", options->files, "Recordings of one person, each with the phrase once; three or more are best")
        ->required()
        ->type_name("");
    command->add_option("--model", options->model, "Where the user's model is stored")->required()->type_name("FILE");
    command->add_flag("--skip-refused", options->skipRefused, "Train from the accepted takes when others are refused");
    commands.AddPageOption(command);
    AddDetectorOptions(command, &options->detector);
    command->footer("  velox-kws enroll en-US take-1.wav take-2.wav take-3.wav --model jana.vwov\n");
    commands.run[command] = [options](Context& context) {
        return EnrollmentRun(*options, context).Run();
    };
}

} // namespace velox::console

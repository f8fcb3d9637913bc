#include "console/takes/VerifyCommand.h"

#include "console/audio/RecordingArguments.h"
#include "console/text/LanguageName.h"
#include "console/text/Utf8Path.h"
#include "console/text/Wording.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <memory>

namespace velox::console
{

namespace
{

ConfiguredLanguage FindLanguage(const std::string& file, uint16_t language)
{
    const ConfigurationFile configuration = ReadConfigurationFile(PathFromUtf8(file));
    const ConfiguredLanguage* found = configuration.Find(language);
    if (found == nullptr)
    {
        std::vector<std::string> others;
        std::ranges::transform(configuration.languages, std::back_inserter(others),
                               [](const ConfiguredLanguage& other) { return LanguageText(other.id); });
        throw CommandFailure(ExitCode::BadConfiguration,
                             fmt::format("Language {} is not in the configuration file {}.", LanguageText(language), file),
                             others.empty() ? "It has no language at all: add one."
                                            : "Take one that is: " + Joined(others) + ".");
    }
    return *found;
}

/// Before anything is read.
std::vector<std::string> FindTakes(const TakeOptions& options, const Context& context, std::span<const Output> outputs)
{
    std::vector<std::string> files = FindRecordings(options.files);
    std::vector<std::filesystem::path> inputs{PathFromUtf8(options.detector.configuration)};
    std::ranges::transform(files, std::back_inserter(inputs), PathFromUtf8);
    RefuseToReplace(context, inputs, outputs);
    return files;
}

Report Verify(const TakeOptions& options, const Context& context)
{
    TakeVerifier verifier(options, context, {});
    std::vector<Take> takes;
    try
    {
        verifier.Verify(context.progress, &takes);
        return VerificationReport(verifier.language, takes);
    }
    catch (const CommandFailure& failure)
    {
        if (takes.empty())
        {
            throw;
        }
        Report report = Failed(VerificationReport(verifier.language, takes), failure);
        report.verdict = "Stopped after " + Counted(takes.size(), "take") + ".";
        return report;
    }
}

} // namespace

CLI::Option* AddTakeOptions(CLI::App* command, Commands& commands, const char* filesHelp, TakeOptions* options)
{
    command->add_option("LANG", options->language, "Language: en-US, 1033 or 0x409")->required()->type_name("");
    CLI::Option* files = command->add_option("WAV", options->files, filesHelp)->type_name("");
    commands.AddPageOption(command);
    AddDetectorOptions(command, &options->detector);
    return files;
}

TakeVerifier::TakeVerifier(const TakeOptions& options, const Context& context, std::span<const Output> outputs)
    : files(FindTakes(options, context, outputs)), language(ParseLanguage(options.language)),
      configured(FindLanguage(options.detector.configuration, language)), models(ReadStandInModels(configured)),
      detector(options.detector, context.log), threshold(ReadThreshold(configured.preDefinedThreshold))
{
}

void TakeVerifier::Verify(Progress& progress, std::vector<Take>* takes)
{
    progress.Begin("Verifying");
    for (const std::string& file : files)
    {
        progress.Update(static_cast<double>(takes->size()) / static_cast<double>(files.size()));
        takes->push_back(VerifyFile(file));
    }
    progress.Update(1.0);
}

Take TakeVerifier::VerifyFile(const std::string& file)
{
    Audio audio;
    try
    {
        audio = ReadAudio(PathFromUtf8(file));
    }
    catch (const CommandFailure& failure)
    {
        return UnreadableTake(file, failure);
    }
    return Judge(file, std::move(audio));
}

Take TakeVerifier::Judge(const std::string& name, Audio audio)
{
    const Answer answer = detector.Verify(language, audio.samples);
    if (std::ranges::find(answer.lines, VeloxLogLevel::Error, &LoggedLine::level) != answer.lines.end())
    {
        answer.Require("Verifying " + name);
    }
    engine::TakeReview review = engine::ReviewTake(models.phrase.get(), audio.samples);
    return MakeTake(name, std::move(audio), std::move(review),
                    {answer.Succeeded(), answer.lines, threshold, configured.qualityThreshold});
}

void AddVerifyCommand(CLI::App& app, Commands& commands)
{
    CLI::App* command = app.add_subcommand("verify", "Tell of recordings whether they hold the key phrase, and why not");
    const auto options = std::make_shared<TakeOptions>();
    AddTakeOptions(command, commands, "Recordings of any sample rate, folders, or patterns such as *.wav", options.get())
        ->required();
    command->footer("  velox-kws verify en-US take-1.wav take-2.wav\n");
    commands.run[command] = [options](Context& context) {
        return Verify(*options, context);
    };
}

} // namespace velox::console

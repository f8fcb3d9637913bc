#include "console/listening/PatternCommands.h"

#include "console/audio/MicrophoneCommands.h"
#include "console/audio/PortAudioMicrophone.h"
#include "console/audio/RecordingArguments.h"
#include "console/hosting/Detector.h"
#include "console/hosting/LogExplanation.h"
#include "console/hosting/Outputs.h"
#include "console/hosting/UserModelStream.h"
#include "console/listening/ListeningReport.h"
#include "console/listening/Pattern.h"
#include "console/text/LanguageName.h"
#include "console/text/Utf8Path.h"
#include "console/text/Wording.h"
#include "console/text/WriteWhole.h"
#include "firmware/BlockLayout.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <memory>

namespace velox::console
{

namespace
{

/// What both commands build a pattern with.
struct PatternOptions
{
    DetectorOptions detector;
    std::string language;
    std::string userModel;
    std::string pattern; ///< its file, which arm writes and listen reads
};

struct ListenOptions : PatternOptions
{
    int blockMilliseconds = 10;
    ListeningSetup setup;                    ///< as far as the command line tells it
    std::optional<std::string> microphone{}; ///< heard in place of recordings: a part of its name, or empty
    std::optional<double> seconds{};
};

oemadapter::ComPointer<IStream> UserModelOf(const PatternOptions& options)
{
    return options.userModel.empty() ? EmptyStream() : OpenUserModel(PathFromUtf8(options.userModel));
}

ArmingAnswer ArmFor(uint16_t language, IStream* userModel, Detector* detector)
{
    ArmingAnswer answer = detector->Arm(userModel, language);
    answer.Require("Arming language " + LanguageText(language));
    return answer;
}

Report Arm(const PatternOptions& options, const Context& context)
{
    const std::array inputs{PathFromUtf8(options.detector.configuration), PathFromUtf8(options.userModel)};
    const std::filesystem::path output = PathFromUtf8(options.pattern);
    RefuseToReplace(context, inputs, std::array{Output{output, OutputKind::Pattern}});
    const uint16_t language = ParseLanguage(options.language);
    const bool isUserModel = !options.userModel.empty();
    Detector detector(options.detector, context.log);
    const ArmingAnswer answer = ArmFor(language, UserModelOf(options).get(), &detector);
    if (isUserModel && !answer.usedUserModel)
    {
        throw CommandFailure(ExitCode::BadInput, options.userModel + " holds no user model: it does not begin with VWOV.",
                             "Make one with velox-kws enroll, or leave --model out to arm everybody's model.");
    }
    const std::vector<uint8_t>& pattern = answer.pattern;
    WriteWhole(output, pattern);

    const std::size_t modelBytes = pattern.size() - firmware::PatternLayout::ModelOffset;
    Report report;
    Entry& block = report.results.emplace_back(options.pattern);
    block.facts = {
        {"file", options.pattern},
        {"language", language, "language", LanguageText(language)},
        {"model", isUserModel ? "user" : "predefined", "model",
         isUserModel ? "the user's, " + options.userModel : "everybody's, from the configuration"},
        {"modelBytes", modelBytes, "model's size", Counted(modelBytes, "byte")},
        {"threshold", ThresholdOf(pattern), "threshold",
         fmt::format("{:g} ({})", ThresholdOf(pattern), isUserModel ? "userDefinedKpdSensitivity" : "preDefinedKpdSensitivity")},
        {"bytes", pattern.size(), "size", Counted(pattern.size(), "byte")}};
    if (const auto warning = SimulatorWarning(pattern))
    {
        block.remarks = {*warning};
    }
    report.verdict = "Written: " + options.pattern + ".";
    return report;
}

/// A folder, and the files in it that a run with these recordings may replace.
std::vector<Output> OutputsIn(const std::string& folderName, OutputKind kind, const std::string& ending,
                              const std::vector<std::string>& stems)
{
    const std::filesystem::path folder = PathFromUtf8(folderName);
    std::vector<Output> outputs{{folder, kind}};
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder, error))
    {
        const std::string name = Utf8(entry.path().filename());
        if (name.ends_with(ending) &&
            std::ranges::any_of(stems, [&](const std::string& stem) { return name.starts_with(stem + "-"); }))
        {
            outputs.push_back({entry.path(), kind});
        }
    }
    return outputs;
}

/// Of result blocks and saved sounds those files may be replaced that hold one; a file must not lie where their folder should be.
void RefuseToReplaceFiles(const ListenOptions& options, const std::vector<std::string>& recordings, const Context& context)
{
    std::vector<std::filesystem::path> inputs{PathFromUtf8(options.detector.configuration), PathFromUtf8(options.pattern),
                                              PathFromUtf8(options.userModel)};
    std::vector<std::string> stems{MicrophoneStem};
    for (const std::string& recording : recordings)
    {
        inputs.push_back(PathFromUtf8(recording));
        stems.push_back(Utf8(inputs.back().stem()));
    }
    std::vector<Output> outputs = OutputsIn(options.setup.blockFolder, OutputKind::ResultBlock, ".result", stems);
    const std::vector<Output> sounds = OutputsIn(options.setup.audioFolder, OutputKind::Recording, ".wav", stems);
    outputs.insert(outputs.end(), sounds.begin(), sounds.end());
    RefuseToReplace(context, inputs, outputs);
}

/// Arms the library with what it builds for the pattern's language.
PatternOrigin ArmLibrary(const ListenOptions& options, std::span<const uint8_t> pattern, IStream* userModel, Detector* detector)
{
    std::vector<uint16_t> languages;
    if (options.language.empty())
    {
        const CapabilitiesAnswer answer = detector->GetCapabilities();
        answer.Require("Reading the languages");
        if (answer.languages.empty())
        {
            throw CommandFailure(ExitCode::BadConfiguration, "No language is configured.", "Add one to the configuration file.");
        }
        languages = answer.languages;
    }
    else
    {
        languages = {ParseLanguage(options.language)};
    }
    const auto build = [&](uint16_t language) {
        return ArmFor(language, userModel, detector).pattern;
    };
    return FindPatternOrigin(languages, build, pattern);
}

std::vector<Remark> Remarks(firmware::Fault fault, const PatternOrigin& origin)
{
    const std::string& difference = origin.difference;
    std::vector<Remark> remarks;
    if (!origin.equals.empty())
    {
        remarks.push_back({Tone::Warning, "SeveralLanguages",
                           fmt::format("the pattern is that of {} alike; the first is told", origin.equals),
                           "Say with --language which one it is for."});
    }
    if (const auto name = std::ranges::find(firmware::FaultNames, fault, &firmware::FaultName::fault);
        name != std::end(firmware::FaultNames))
    {
        remarks.push_back({Tone::Note, "Fault", fmt::format("fault \"{}\": {}", name->name, name->sentence), ""});
    }
    if (fault == firmware::Fault::StalePattern)
    {
        const char* same = difference.empty() ? ", which is the same one: nothing shows" : "";
        remarks.push_back(
            {Tone::Note, "NewerPattern", fmt::format("the newer pattern is what the library builds now{}", same), ""});
    }
    if (!difference.empty())
    {
        remarks.push_back({Tone::Warning, "OtherPattern", difference, "Arm again, or name what the pattern was built with."});
    }
    return remarks;
}

Report Listen(const ListenOptions& options, Context& context)
{
    ListeningSetup setup = options.setup;
    setup.recordings = FindRecordings(options.setup.recordings);
    RefuseToReplaceFiles(options, setup.recordings, context);
    setup.pattern = ReadPattern(options.pattern);
    Detector detector(options.detector, context.log);
    const auto userModel = UserModelOf(options);
    const PatternOrigin origin = ArmLibrary(options, setup.pattern, userModel.get(), &detector);
    setup.newerPattern = setup.fault == firmware::Fault::StalePattern ? origin.pattern : std::vector<uint8_t>();
    setup.detector = DetectorOf(origin.pattern);
    setup.blockSamples = static_cast<std::size_t>(options.blockMilliseconds) * engine::SampleRate / 1000;
    setup.pictures = !context.page.empty();
    const BlockParser parse = [&](std::span<const uint8_t> block) {
        const DetectionAnswer answer = detector.Parse(userModel.get(), block);
        return ParsedBlock{answer.result,
                           answer.keywordId,
                           answer.language,
                           answer.isUserMatch,
                           answer.keywordStart,
                           answer.keywordEnd,
                           answer.Succeeded() ? ""
                                              : ExplainFailure("Parsing the result block", answer.result, answer.lines).what()};
    };
    const ListeningSubject subject{options.pattern, setup.pattern.size(), origin.language, Remarks(setup.fault, origin),
                                   options.microphone.has_value()};
    if (options.microphone)
    {
        const auto microphone = OpenMicrophone(*options.microphone);
        return ListeningReport(subject, HearMicrophone(setup, options.seconds, parse, microphone.get(), &context.progress));
    }
    return ListeningReport(subject, HearRecordings(setup, parse, &context.progress));
}

} // namespace

void AddArmCommand(CLI::App& app, Commands& commands)
{
    CLI::App* command = app.add_subcommand("arm", "Write the block that arms the firmware for a language");
    const auto options = std::make_shared<PatternOptions>();
    command->add_option("LANG", options->language, "Language: en-US, 1033 or 0x409")->required()->type_name("");
    command->add_option("--model", options->userModel, "The user's model, from velox-kws enroll; without it everybody's is armed")
        ->type_name("FILE");
    command->add_option("--out", options->pattern, "Where the block is written, exactly as the library returns it")
        ->required()
        ->type_name("FILE");
    AddDetectorOptions(command, &options->detector);
    command->footer("  velox-kws arm en-US --model jana.vwov --out pattern.bin\n");
    commands.run[command] = [options](Context& context) {
        return Arm(*options, context);
    };
}

void AddListenCommand(CLI::App& app, Commands& commands)
{
    CLI::App* command =
        app.add_subcommand("listen", "Let the DSP simulator hear recordings or a microphone with an arming pattern");
    const auto options = std::make_shared<ListenOptions>();
    CLI::Option* recordings = command
                                  ->add_option("WAV", options->setup.recordings,
                                               "Recordings of any length and sample rate, folders of them, or patterns as *.wav")
                                  ->type_name("");
    CLI::Option* microphone = AddMicrophoneOption(command, recordings, &options->microphone);
    command->add_option("--seconds", options->seconds, "How long the microphone is heard; without it until Ctrl-C")
        ->needs(microphone)
        ->check(CLI::Range(0.1, 1e6))
        ->type_name("NUMBER");
    command->add_option("--pattern", options->pattern, "The block that arms it, from velox-kws arm")
        ->required()
        ->type_name("FILE");
    command
        ->add_option("--language", options->language,
                     "The pattern's language: en-US, 1033 or 0x409; without it the one whose pattern it is")
        ->type_name("LANG");
    command->add_option("--model", options->userModel, "The user's model that the pattern was built with")->type_name("FILE");
    command->add_option("--save-results", options->setup.blockFolder, "Folder for the result blocks, a file each")
        ->type_name("DIR");
    command
        ->add_option("--save-audio", options->setup.audioFolder,
                     "Folder for the sound around each detection and near miss, a WAV each")
        ->type_name("DIR");
    commands.AddPageOption(command);
    command->add_option("--block", options->blockMilliseconds, "Audio that the simulator gets at once; default 10")
        ->check(CLI::Range(1, 10'000))
        ->type_name("MILLISECONDS");
    command
        ->add_option("--drift", options->setup.counter.driftPpm, "By how much the performance counter is faster than the audio")
        ->check(CLI::Range(-100'000, 100'000))
        ->type_name("PPM");
    command->add_option("--offset", options->setup.counter.offset, "Performance counter at the first sample, in units of 100 ns")
        ->type_name("TICKS");
    std::map<std::string, firmware::Fault> faults;
    for (const firmware::FaultName& fault : firmware::FaultNames)
    {
        faults.emplace(fault.name, fault.fault);
    }
    command
        ->add_option("--fail", options->setup.fault,
                     "A fault of the DSP: reset, foreign-guid, truncated, unknown-keyword or stale")
        ->transform(CLI::CheckedTransformer(faults))
        ->type_name("FAULT");
    AddDetectorOptions(command, &options->detector);
    command->footer("  velox-kws listen --pattern pattern.bin evening.wav --save-results blocks\n"
                    "  velox-kws listen --pattern pattern.bin --microphone\n");
    commands.run[command] = [options](Context& context) {
        return Listen(*options, context);
    };
}

} // namespace velox::console

#include "console/listening/ListenCommand.h"

#include "console/audio/RecordingArguments.h"
#include "console/hosting/Detector.h"
#include "console/hosting/LogExplanation.h"
#include "console/hosting/Outputs.h"
#include "console/hosting/UserModelStream.h"
#include "console/listening/ListeningReport.h"
#include "console/listening/Pattern.h"
#include "console/text/LanguageName.h"
#include "console/text/Utf8Path.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>

namespace velox::console
{

namespace
{

constexpr int MostBlockMilliseconds = 10'000;
constexpr int MostDriftPpm = 100'000;
constexpr std::size_t SamplesPerMillisecond = engine::SampleRate / 1000;

struct ListenOptions
{
    DetectorOptions detector;
    std::string pattern;
    std::vector<std::string> recordings;
    std::string language;
    std::string userModel;
    std::string saveResults;
    int blockMilliseconds = 10;
    firmware::PerformanceCounter counter;
    firmware::Fault fault = firmware::Fault::None;
};

/// All that the command reads and, of the result blocks, the files that may be replaced. What lies where their folder should be
/// is one, too.
void RefuseToReplaceFiles(const ListenOptions& options, const std::vector<std::string>& recordings, const Context& context)
{
    std::vector<std::filesystem::path> inputs{PathFromUtf8(options.detector.configuration), PathFromUtf8(options.pattern),
                                              PathFromUtf8(options.userModel)};
    const std::filesystem::path folder = PathFromUtf8(options.saveResults);
    std::vector<Output> outputs;
    std::error_code error;
    if (std::filesystem::is_directory(folder, error))
    {
        for (const auto& entry : std::filesystem::directory_iterator(folder, error))
        {
            outputs.push_back({entry.path(), OutputKind::ResultBlock});
        }
    }
    else
    {
        outputs.push_back({folder, OutputKind::ResultBlock});
    }
    std::vector<std::string> stems;
    for (const std::string& recording : recordings)
    {
        inputs.push_back(PathFromUtf8(recording));
        stems.push_back(Utf8(inputs.back().stem()) + "-");
    }
    RefuseToReplace(context, inputs, outputs);
}

/// Arms the library with what it builds for the pattern's language.
PatternOrigin ArmLibrary(const ListenOptions& options, std::span<const uint8_t> pattern, IStream* userModel, Detector* detector)
{
    std::vector<uint16_t> languages;
    if (!options.language.empty())
    {
        languages = {ParseLanguage(options.language)};
    }
    else
    {
        const CapabilitiesAnswer answer = detector->GetCapabilities();
        if (!answer.Succeeded())
        {
            throw ExplainFailure("Reading the languages", answer.result, answer.lines);
        }
        if (answer.languages.empty())
        {
            throw CommandFailure(ExitCode::BadConfiguration, "No language is configured.", "Add one to the configuration file.");
        }
        languages = answer.languages;
    }
    const auto build = [&](uint16_t language) {
        ArmingAnswer answer = detector->Arm(userModel, language);
        if (!answer.Succeeded())
        {
            throw ExplainFailure("Arming language " + LanguageText(language), answer.result, answer.lines);
        }
        return answer.pattern;
    };
    return FindPatternOrigin(languages, build, pattern);
}

std::vector<Remark> Remarks(firmware::Fault fault, const std::string& difference)
{
    std::vector<Remark> remarks;
    for (const firmware::FaultName& name : firmware::FaultNames)
    {
        if (name.fault == fault)
        {
            remarks.push_back({Tone::Note, "Fault", fmt::format("fault \"{}\": {}", name.name, name.sentence), ""});
        }
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

ParsedBlock Parse(Detector* detector, IStream* userModel, std::span<const uint8_t> block)
{
    const DetectionAnswer answer = detector->Parse(userModel, block);
    return {answer.result,
            answer.keywordId,
            answer.language,
            answer.isUserMatch,
            answer.keywordStart,
            answer.keywordEnd,
            answer.Succeeded() ? "" : ExplainFailure("Parsing the result block", answer.result, answer.lines).what()};
}

Report Listen(const ListenOptions& options, Context& context)
{
    ListeningSetup setup;
    setup.recordings = FindRecordings(options.recordings);
    RefuseToReplaceFiles(options, setup.recordings, context);
    setup.pattern = ReadPattern(options.pattern);
    Detector detector(options.detector, context.log);
    const auto userModel = options.userModel.empty() ? EmptyStream() : OpenUserModel(PathFromUtf8(options.userModel));
    const PatternOrigin origin = ArmLibrary(options, setup.pattern, userModel.get(), &detector);
    setup.newerPattern = options.fault == firmware::Fault::StalePattern ? origin.pattern : std::vector<uint8_t>();
    setup.detector = DetectorOf(origin.pattern);
    setup.counter = options.counter;
    setup.fault = options.fault;
    setup.blockSamples = static_cast<std::size_t>(options.blockMilliseconds) * SamplesPerMillisecond;
    setup.pictures = !context.page.empty();
    setup.blockFolder = options.saveResults;
    const BlockParser parse = [&](std::span<const uint8_t> block) {
        return Parse(&detector, userModel.get(), block);
    };
    return ListeningReport({options.pattern, setup.pattern.size(), origin.language, Remarks(options.fault, origin.difference)},
                           HearRecordings(setup, parse, &context.progress));
}

} // namespace

void AddListenCommand(CLI::App& app, Commands& commands)
{
    CLI::App* command = app.add_subcommand("listen", "Let the DSP simulator hear recordings with an arming pattern");
    const auto options = std::make_shared<ListenOptions>();
    command->add_option("WAV", options->recordings, "Recordings of any length and sample rate; each is heard from its beginning")
        ->required()
        ->type_name("");
    command->add_option("--pattern", options->pattern, "The block that arms it, from velox-kws arm")
        ->required()
        ->type_name("FILE");
    command
        ->add_option("--language", options->language,
                     "The pattern's language: en-US, 1033 or 0x409; without it the one whose pattern it is")
        ->type_name("LANG");
    command->add_option("--model", options->userModel, "The user's model that the pattern was built with")->type_name("FILE");
    command->add_option("--save-results", options->saveResults, "Folder for the result blocks, a file each")->type_name("DIR");
    commands.AddPageOption(command);
    command->add_option("--block", options->blockMilliseconds, "Audio that the simulator gets at once; default 10")
        ->check(CLI::Range(1, MostBlockMilliseconds))
        ->type_name("MILLISECONDS");
    command->add_option("--drift", options->counter.driftPpm, "By how much the performance counter is faster than the audio")
        ->check(CLI::Range(-MostDriftPpm, MostDriftPpm))
        ->type_name("PPM");
    command->add_option("--offset", options->counter.offset, "Performance counter at the first sample, in units of 100 ns")
        ->type_name("TICKS");
    std::map<std::string, firmware::Fault> faults;
    for (const firmware::FaultName& fault : firmware::FaultNames)
    {
        faults.emplace(fault.name, fault.fault);
    }
    command->add_option("--fail", options->fault, "A fault of the DSP: reset, foreign-guid, truncated, unknown-keyword or stale")
        ->transform(CLI::CheckedTransformer(faults))
        ->type_name("FAULT");
    AddDetectorOptions(command, &options->detector);
    command->footer("  velox-kws listen --pattern pattern.bin evening.wav --save-results blocks\n");
    commands.run[command] = [options](Context& context) {
        return Listen(*options, context);
    };
}

} // namespace velox::console

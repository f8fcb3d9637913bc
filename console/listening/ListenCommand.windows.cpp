#include "console/listening/ListenCommand.h"

#include "console/audio/AudioFile.h"
#include "console/hosting/Detector.h"
#include "console/hosting/LogExplanation.h"
#include "console/hosting/UserModelStream.h"
#include "console/listening/ListeningReport.h"
#include "console/listening/PatternOrigin.h"
#include "console/text/LanguageName.h"
#include "console/text/Utf8Path.h"
#include "console/text/WriteWhole.h"

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

std::optional<uint16_t> Language(const ListenOptions& options)
{
    return options.language.empty() ? std::nullopt : std::optional(ParseLanguage(options.language));
}

ListeningSetup Setup(const ListenOptions& options, std::vector<uint8_t> pattern, const PatternOrigin& origin)
{
    ListeningSetup setup;
    setup.pattern = std::move(pattern);
    // The detector's GUID as the library writes it.
    std::copy_n(origin.pattern.begin() + firmware::BlockHead::PatternTypeOffset, setup.detector.size(), setup.detector.begin());
    setup.counter = options.counter;
    setup.fault = options.fault;
    setup.blockSamples = static_cast<std::size_t>(options.blockMilliseconds) * SamplesPerMillisecond;
    if (options.fault == firmware::Fault::StalePattern)
    {
        setup.newerPattern = origin.pattern;
    }
    return setup;
}

std::vector<std::string> Notes(const ListeningSetup& setup, const PatternOrigin& origin)
{
    std::vector<std::string> notes;
    const auto* fault = std::ranges::find(firmware::FaultNames, setup.fault, &firmware::FaultName::fault);
    if (fault != firmware::FaultNames.end())
    {
        notes.push_back(fmt::format("Fault \"{}\": {}", fault->name, fault->sentence));
    }
    if (setup.fault == firmware::Fault::StalePattern)
    {
        notes.push_back(origin.difference.empty()
                            ? "The newer pattern is what the library builds now: the same one, so nothing shows."
                            : "The newer pattern is what the library builds now.");
    }
    if (!origin.difference.empty())
    {
        notes.push_back(origin.difference);
    }
    return notes;
}

ListeningSubject Subject(const ListenOptions& options, const ListeningSetup& setup, const PatternOrigin& origin)
{
    ListeningSubject subject;
    subject.patternName = options.pattern;
    subject.patternSize = setup.pattern.size();
    subject.language = origin.language;
    subject.notes = Notes(setup, origin);
    return subject;
}

ParsedBlock Parse(Detector* detector, IStream* userModel, std::span<const uint8_t> block)
{
    const DetectionAnswer answer = detector->Parse(userModel, block);
    ParsedBlock parsed{
        answer.result, answer.keywordId, answer.language, answer.isUserMatch, answer.keywordStart, answer.keywordEnd, {}};
    if (!answer.Succeeded())
    {
        parsed.explanation = ExplainFailure("Parsing the result block", answer.result, answer.lines).what();
    }
    return parsed;
}

/// Writes every block into a file of its own: the recording's name, and a number that counts through the run.
void SaveBlocks(const std::filesystem::path& folder, std::vector<HeardFile>* files)
{
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    std::size_t number = 0;
    for (HeardFile& file : *files)
    {
        for (const HeardDetection& detection : file.heard.detections)
        {
            const std::string stem = Utf8(PathFromUtf8(file.name).stem());
            const std::filesystem::path path = folder / PathFromUtf8(fmt::format("{}-{:03}.result", stem, ++number));
            WriteWhole(path, detection.block);
            file.savedBlocks.push_back(Utf8(path));
        }
    }
}

Outcome Listen(const ListenOptions& options, Context& context)
{
    const std::vector<uint8_t> pattern = ReadWhole(PathFromUtf8(options.pattern));
    Detector detector(options.detector, context.log);
    const ComPointer<IStream> userModel =
        options.userModel.empty() ? EmptyStream() : OpenUserModel(PathFromUtf8(options.userModel));
    const PatternOrigin origin = FindPatternOrigin(&detector, userModel.get(), Language(options), pattern);
    const ListeningSetup setup = Setup(options, pattern, origin);
    const BlockParser parse = [&](std::span<const uint8_t> block) {
        return Parse(&detector, userModel.get(), block);
    };

    std::vector<HeardFile> files;
    for (const std::string& recording : options.recordings)
    {
        const Audio audio = ReadAudio(PathFromUtf8(recording));
        context.progress.Begin(recording);
        files.push_back({recording,
                         audio.conversion,
                         HearRecording(setup, audio.samples, parse, [&](double share) { context.progress.Update(share); }),
                         {}});
    }
    if (!options.saveResults.empty())
    {
        SaveBlocks(PathFromUtf8(options.saveResults), &files);
    }
    const ListeningSubject subject = Subject(options, setup, origin);
    Outcome outcome = ListeningOutcome(subject, files, context.style);
    return outcome;
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

#include "console/hosting/CapabilitiesCommand.h"

#include "console/hosting/Detector.h"
#include "console/hosting/LogExplanation.h"
#include "console/text/FieldLine.h"
#include "console/text/LanguageName.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <nlohmann/json.hpp>

#include <memory>

namespace velox::console
{

namespace
{

std::string Describe(const CapabilitiesAnswer& answer)
{
    std::string text = FieldLine("Keyword ids", fmt::format("{}", fmt::join(answer.keywordIds, ", ")));
    text += FieldLine("User models", answer.supportsUserModels ? "yes" : "no");
    text += FieldLine("Audio", fmt::format("{} Hz, {} channel{}, {} bits", answer.samplesPerSecond, answer.channels,
                                           answer.channels == 1 ? "" : "s", answer.bitsPerSample));
    std::string name = "Languages";
    for (const uint16_t language : answer.languages)
    {
        text += name.empty() ? std::string(15, ' ') + LanguageText(language) + "\n" : FieldLine(name, LanguageText(language));
        name.clear();
    }
    return text;
}

nlohmann::ordered_json Result(const CapabilitiesAnswer& answer, uint16_t language)
{
    return {{"language", language},
            {"name", LanguageName(language)},
            {"keywordIds", answer.keywordIds},
            {"userModels", answer.supportsUserModels},
            {"samplesPerSecond", answer.samplesPerSecond},
            {"channels", answer.channels},
            {"bitsPerSample", answer.bitsPerSample}};
}

Outcome ShowCapabilities(const DetectorOptions& options, const Context& context)
{
    Detector detector(options, context.log);
    const CapabilitiesAnswer answer = detector.GetCapabilities();
    if (!answer.Succeeded())
    {
        throw ExplainFailure("Asking for the capabilities", answer.result, answer.lines);
    }
    if (answer.languages.empty())
    {
        throw CommandFailure(ExitCode::BadConfiguration, "The configuration file " + options.configuration + " has no language.",
                             "Add a language element, or make one with velox-kws make-language.");
    }
    Outcome outcome;
    outcome.text = Describe(answer);
    for (const uint16_t language : answer.languages)
    {
        outcome.results.Add(Result(answer, language));
    }
    const std::size_t count = answer.languages.size();
    outcome.verdict = fmt::format("The detector serves {} language{}.", count, count == 1 ? "" : "s");
    return outcome;
}

} // namespace

void AddCapabilitiesCommand(CLI::App& app, Commands& commands)
{
    CLI::App* command = app.add_subcommand("capabilities", "What the detector announces to Windows");
    const auto options = std::make_shared<DetectorOptions>();
    AddDetectorOptions(command, options.get());
    command->footer("  velox-kws capabilities --config C:\\Velox\\VeloxKwsConfig.xml\n");
    commands.run[command] = [options](Context& context) {
        return ShowCapabilities(*options, context);
    };
}

} // namespace velox::console

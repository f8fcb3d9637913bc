#include "console/hosting/CapabilitiesCommand.h"

#include "console/hosting/Detector.h"
#include "console/hosting/Outputs.h"
#include "console/text/LanguageName.h"
#include "console/text/Utf8Path.h"
#include "console/text/Wording.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <fmt/ranges.h>

#include <array>
#include <memory>

namespace velox::console
{

namespace
{

Report ShowCapabilities(const DetectorOptions& options, const Context& context)
{
    RefuseToReplace(context, std::array{PathFromUtf8(options.configuration)}, {});
    Detector detector(options, context.log);
    const CapabilitiesAnswer answer = detector.GetCapabilities();
    answer.Require("Asking for the capabilities");
    if (answer.languages.empty())
    {
        throw CommandFailure(ExitCode::BadConfiguration, "The configuration file " + options.configuration + " has no language.",
                             "Add a language element, or make one with velox-kws make-language.");
    }
    std::vector<std::string> names;
    for (const uint16_t language : answer.languages)
    {
        names.push_back(LanguageText(language));
    }
    const std::string audio =
        fmt::format("{} Hz, {}, {} bits", answer.samplesPerSecond, Counted(answer.channels, "channel"), answer.bitsPerSample);
    Report report;
    report.facts = {
        {"keywordIds", std::vector<int64_t>(answer.keywordIds.begin(), answer.keywordIds.end()), "keyword ids",
         fmt::format("{}", fmt::join(answer.keywordIds, ", "))},
        {"userModels", answer.supportsUserModels, "user models", answer.supportsUserModels ? "yes" : "no"},
        {"samplesPerSecond", answer.samplesPerSecond, "audio", audio},
        {"channels", answer.channels},
        {"bitsPerSample", answer.bitsPerSample},
        {"languages", std::vector<int64_t>(answer.languages.begin(), answer.languages.end()), "languages", Joined(names)}};
    report.verdict = fmt::format("The detector serves {}.", Counted(answer.languages.size(), "language"));
    return report;
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

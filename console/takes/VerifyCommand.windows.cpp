#include "console/takes/VerifyCommand.h"

#include "console/takes/TakeVerifier.h"
#include "console/text/LanguageName.h"
#include "console/text/Utf8Path.h"
#include "console/text/WriteWhole.h"

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include <memory>

namespace velox::console
{

namespace
{

struct VerifyOptions
{
    DetectorOptions detector;
    std::string language;
    std::vector<std::string> files;
};

Outcome Verify(const VerifyOptions& options, const Context& context)
{
    TakeVerifier verifier(options.detector, options.language, context.log);
    const std::vector<TakeReport> takes = verifier.Verify(options.files, context.progress);
    Outcome outcome{ExitCodeOf(takes), Verdict(takes), ""};
    for (const TakeReport& take : takes)
    {
        outcome.text += TakeText(take, outcome.results.Count() + 1, context.style);
        outcome.results.Add(TakeJson(take));
    }
    return outcome;
}

} // namespace

void AddVerifyCommand(CLI::App& app, Commands& commands)
{
    CLI::App* command = app.add_subcommand("verify", "Tell of recordings whether they hold the key phrase, and why not");
    const auto options = std::make_shared<VerifyOptions>();
    command->add_option("LANG", options->language, "Language: en-US, 1033 or 0x409")->required()->type_name("");
    command->add_option("WAV", options->files, "Recordings, of any sample rate")->required()->type_name("");
    commands.AddPageOption(command);
    AddDetectorOptions(command, &options->detector);
    command->footer("  velox-kws verify en-US take-1.wav take-2.wav\n");
    commands.run[command] = [options](Context& context) {
        return Verify(*options, context);
    };
}

} // namespace velox::console

#include "console/takes/VerifyCommand.h"

#include "console/pages/ReportPage.h"
#include "console/takes/TakePage.h"
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
    std::string report;
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
    if (!options.report.empty())
    {
        const Report page = TakePage("verify", LanguageText(verifier.Language()), takes, outcome);
        WriteWhole(PathFromUtf8(options.report), RenderReport(page));
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
    command->add_option("--report", options->report, "Also write a page with a picture of each recording")
        ->type_name("FILE.html");
    AddDetectorOptions(command, &options->detector);
    command->footer("  velox-kws verify en-US take-1.wav take-2.wav\n");
    commands[command] = [options](Context& context) {
        return Verify(*options, context);
    };
}

} // namespace velox::console

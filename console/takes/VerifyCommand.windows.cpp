#include "console/takes/VerifyCommand.h"

#include "console/takes/TakeVerifier.h"
#include "console/text/Wording.h"

#include <CLI/CLI.hpp>

#include <memory>

namespace velox::console
{

namespace
{

Report Verify(const TakeOptions& options, const Context& context)
{
    TakeVerifier verifier(options, context, {});
    std::vector<Take> takes;
    try
    {
        verifier.Verify(context.progress, &takes);
        return VerificationReport(takes);
    }
    catch (const CommandFailure& failure)
    {
        if (takes.empty())
        {
            throw;
        }
        Report report = Failed(VerificationReport(takes), failure);
        report.verdict = "Stopped after " + Counted(takes.size(), "take") + ".";
        return report;
    }
}

} // namespace

void AddVerifyCommand(CLI::App& app, Commands& commands)
{
    CLI::App* command = app.add_subcommand("verify", "Tell of recordings whether they hold the key phrase, and why not");
    const auto options = std::make_shared<TakeOptions>();
    AddTakeOptions(command, commands, "Recordings of any sample rate, folders, or patterns such as *.wav", options.get());
    command->footer("  velox-kws verify en-US take-1.wav take-2.wav\n");
    commands.run[command] = [options](Context& context) {
        return Verify(*options, context);
    };
}

} // namespace velox::console

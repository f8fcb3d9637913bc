#include "console/doctor/DoctorCommand.h"

#include "console/doctor/ConfigurationCheck.h"
#include "console/doctor/EngineProbe.h"
#include "console/doctor/FindingText.h"
#include "console/doctor/LocaleName.h"
#include "console/doctor/SettingsKey.h"
#include "console/hosting/DetectorOptions.h"
#include "console/text/Utf8Path.h"

#include <windows.h>

#include <CLI/CLI.hpp>

#include <memory>

namespace velox::console
{

namespace
{

/// The library takes the configuration's path in the process's code page.
Findings CheckPath(const std::filesystem::path& configuration)
{
    const std::wstring wide = configuration.wstring();
    BOOL replaced = FALSE;
    const UINT codePage = GetACP();
    WideCharToMultiByte(codePage, WC_NO_BEST_FIT_CHARS, wide.c_str(), -1, nullptr, 0, nullptr,
                        codePage == CP_UTF8 ? nullptr : &replaced);
    if (replaced == FALSE)
    {
        return {};
    }
    return {{Severity::Error, Utf8(configuration), 0, "The path has characters that this system's code page lacks.",
             "The library's caller cannot hand it over.", "Rename the file or its folder; letters without accents always work.",
             FailuresOf(
                 {Operation::Capabilities, Operation::Verification, Operation::Training, Operation::Arming, Operation::Parsing},
                 {})}};
}

void Append(Findings more, Findings* findings)
{
    findings->insert(findings->end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
}

} // namespace

Outcome Examine(const std::filesystem::path& configuration, bool everything, const Style& style)
{
    ConfigurationCheck check = CheckConfiguration(configuration, LocaleName);
    Findings findings = CheckPath(configuration);
    Append(std::move(check.findings), &findings);
    Append(CheckEngine(ProbeEngine()), &findings);
    Append(CheckSettings(ReadSettingsKey()), &findings);

    Outcome outcome;
    outcome.text = FindingsText(findings, everything, style);
    outcome.results = FindingsJson(findings);
    outcome.verdict = FindingsVerdict(findings, check.languages);
    const bool errors = CountOf(findings, Severity::Error) > 0;
    outcome.exitCode = !check.usable ? ExitCode::BadConfiguration : errors ? ExitCode::Refused : ExitCode::Success;
    return outcome;
}

void AddDoctorCommand(CLI::App& app, Commands& commands)
{
    CLI::App* command =
        app.add_subcommand("doctor", "Checks a configuration file, the files that it names, the engine and the registry");
    const auto options = std::make_shared<DetectorOptions>();
    AddDetectorOptions(command, options.get());
    command->remove_option(command->get_option("--detector-id")); // no block is looked at
    command->add_option("CONFIG", options->configuration, "The same as --config FILE");
    command->footer("  velox-kws doctor C:\\ProgramData\\Velox\\configuration.xml\n");
    commands.run[command] = [options](Context& context) {
        return Examine(PathFromUtf8(options->configuration), context.log.verbose, context.style);
    };
}

} // namespace velox::console

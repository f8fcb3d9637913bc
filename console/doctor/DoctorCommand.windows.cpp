#include "console/doctor/DoctorCommand.h"

#include "console/doctor/AdapterCheck.h"
#include "console/doctor/Bundle.h"
#include "console/hosting/DetectorOptions.h"
#include "console/hosting/NarrowPath.h"
#include "console/hosting/Outputs.h"
#include "console/text/Utf8Path.h"
#include "console/text/WriteWhole.h"

#include <windows.h>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <array>
#include <memory>

namespace velox::console
{

namespace
{

/// Windows tells programs an older version than it is, but for this file of its own.
std::string SystemText()
{
    wchar_t folder[MAX_PATH]{};
    GetSystemDirectoryW(folder, MAX_PATH);
    const std::string version = FileVersionOf(std::wstring(folder) + L"\\kernel32.dll");
    return fmt::format("Windows {}, code page {}", version.empty() ? "of an unknown version" : version, GetACP());
}

/// The findings stay when the bundle cannot be written.
void WriteBundle(const std::filesystem::path& bundle, const BundleContents& contents, Report* report)
{
    try
    {
        WriteWhole(bundle, BundleText(contents));
        report->facts.push_back({"bundle", Utf8(bundle), "bundle", Utf8(bundle)});
    }
    catch (const CommandFailure& failure)
    {
        report->error = Problem{failure.what(), failure.fix};
        report->exitCode = failure.exitCode;
    }
}

} // namespace

Report Examine(const std::filesystem::path& configuration, const std::filesystem::path& bundle, const std::filesystem::path& log)
{
    const EngineFacts engine = ProbeEngine();
    const RegistrySettings settings = ReadSettingsKey();
    ConfigurationCheck check = CheckConfiguration(configuration);
    if (!NarrowPath(configuration))
    {
        Subject{Utf8(configuration), &check.findings}.Add(
            Tone::Bad, 0, "The path has characters that this system's code page lacks.",
            "The library's caller cannot hand it over.", "Rename the file or its folder; letters without accents always work.",
            EveryOperation);
    }
    const AdapterFacts adapter = ProbeAdapter(DefaultDetectorId);
    for (const Findings& more : {CheckEngine(engine), CheckSettings(settings), CheckAdapter(adapter, configuration)})
    {
        check.findings.insert(check.findings.end(), more.begin(), more.end());
    }
    Report report = ReportOf(std::move(check.findings), check.languages);
    report.exitCode = check.usable ? report.exitCode : ExitCode::BadConfiguration;
    if (!bundle.empty())
    {
        const std::filesystem::path usualLog = std::filesystem::temp_directory_path() / "velox-kws.log";
        WriteBundle(bundle, {SystemText(), report, configuration, check.files, settings, engine, {usualLog, log}}, &report);
    }
    return report;
}

void AddDoctorCommand(CLI::App& app, Commands& commands)
{
    CLI::App* command = app.add_subcommand(
        "doctor", "Checks a configuration file, the files that it names, the engine, the registry and the OEM adapter");
    const auto options = std::make_shared<DetectorOptions>();
    const auto bundle = std::make_shared<std::string>();
    AddDetectorOptions(command, options.get());
    command->remove_option(command->get_option("--detector-id")); // no block is looked at
    command->remove_option(command->get_option("--through"));
    command->add_option("CONFIG", options->configuration, "The same as --config FILE");
    command
        ->add_option("--bundle", *bundle, "Also write a text for support: findings, configuration, versions, log; without voice")
        ->type_name("FILE");
    command->footer("  velox-kws doctor C:\\ProgramData\\Velox\\configuration.xml\n"
                    "  velox-kws doctor configuration.xml --bundle support.txt\n");
    commands.run[command] = [options, bundle](Context& context) {
        const std::array inputs{PathFromUtf8(options->configuration)};
        const std::array outputs{Output{PathFromUtf8(*bundle), OutputKind::Bundle}};
        RefuseToReplace(context, inputs, outputs);
        return Examine(inputs.front(), outputs.front().file, context.log.logFile);
    };
}

} // namespace velox::console

// velox-kws: the bring-up console. docs/console.md describes the commands.
#include "console/Commands.h"
#include "console/ConsoleSetup.h"
#include "console/RunCommand.h"
#include "console/pages/ReportDocument.h"
#include "console/text/Interruption.h"
#include "console/text/Utf8Path.h"

#include <windows.h>

#include <shellapi.h>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

namespace
{

using namespace velox::console;

/// main's own arguments have lost the letters that the code page lacks.
std::vector<std::string> Utf8Arguments()
{
    int count = 0;
    wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::string> arguments;
    for (int i = 1; i < count; ++i)
    {
        arguments.push_back(Utf8(wide[i]));
    }
    LocalFree(wide);
    return arguments;
}

/// What holds for every command.
struct GlobalOptions
{
    bool json = false;
    bool verbose = false;
    std::string logFile;
};

void DeclareGlobalOptions(CLI::App* app, GlobalOptions* options)
{
    app->add_flag("--json", options->json, "Print one JSON document instead of text (docs/console-json.schema.json)");
    app->add_flag("--verbose", options->verbose, "Show every log line of the library on the standard error stream");
    app->add_option("--log-file", options->logFile, "Add every log line of the library to this file")->type_name("FILE");
    app->set_version_flag("--version", "velox-kws " VELOX_VERSION);
    app->allow_windows_style_options(false); // /recordings/a.wav is a file
    app->require_subcommand(1);
    app->fallthrough();
}

/// A command's footer holds its examples; the program's help shows them all.
void DeclareExamples(CLI::App* app)
{
    std::string all = "Examples:\n";
    for (CLI::App* command : app->get_subcommands({}))
    {
        const std::string examples = command->get_footer();
        all += examples;
        command->footer("Example:\n" + examples + "\nWith every command: --json, --verbose, --log-file FILE.");
        command->fallthrough();
    }
    app->footer(all + "\nvelox-kws COMMAND --help tells a command's options.");
}

/// @return what is to be done: nothing when the command line asked for help or was wrong, which is then printed
class CommandLine
{
public:
    CommandLine()
    {
        DeclareGlobalOptions(&app, &options);
        AddCommands(app, commands);
        DeclareExamples(&app);
    }

    Report Run(std::vector<std::string> arguments, bool errorsAreTerminal);

    GlobalOptions options;
    std::string commandName;
    std::string help; ///< when that was asked for

private:
    Report RunParsed(bool errorsAreTerminal);

    CLI::App app{"Brings a keyword detector up: checks its files, enrolls from recordings, arms, listens.", "velox-kws"};
    Commands commands;
};

Report CommandLine::Run(std::vector<std::string> arguments, bool errorsAreTerminal)
{
    // For a command line that is wrong, too.
    options.json = std::find(arguments.begin(), arguments.end(), "--json") != arguments.end();
    std::reverse(arguments.begin(), arguments.end());
    try
    {
        app.parse(std::move(arguments));
    }
    catch (const CLI::CallForHelp&)
    {
        help = app.help();
        return {};
    }
    catch (const CLI::CallForVersion& version)
    {
        help = std::string(version.what()) + "\n";
        return {};
    }
    catch (const CLI::ParseError& error)
    {
        return ReportOf({ExitCode::Usage, error.what(), "velox-kws --help lists the commands."});
    }
    return RunParsed(errorsAreTerminal);
}

Report CommandLine::RunParsed(bool errorsAreTerminal)
{
    const CLI::App* command = app.get_subcommands().front();
    commandName = command->get_name();
    Progress progress(errorsAreTerminal && !options.verbose ? &std::cerr : nullptr, std::chrono::steady_clock::now,
                      options.json ? &std::cerr : &std::cout);
    const LogOptions log{options.verbose, PathFromUtf8(options.logFile)};
    Context context{progress, log, PathFromUtf8(commands.page)};
    return RunCommand(commandName, commands.run.at(command), context);
}

/// The first Ctrl-C lets the command end in order; the second ends the process.
BOOL WINAPI OnControl(DWORD)
{
    const bool first = !InterruptionRequested();
    RequestInterruption();
    return first;
}

} // namespace

int main()
{
    const ConsoleSetup console;
    SetConsoleCtrlHandler(OnControl, TRUE);
    const bool coloured = WantsColour(console.OutputTakesColours(), std::getenv("NO_COLOR")); // NOLINT(concurrency-mt-unsafe)
    CommandLine commandLine;
    const Report report = commandLine.Run(Utf8Arguments(), console.ErrorsAreTerminal());
    std::cout << commandLine.help;
    if (commandLine.options.json && commandLine.help.empty())
    {
        std::cout << ReportDocument(commandLine.commandName, report) << std::flush;
    }
    else
    {
        PrintReport(report, coloured, commandLine.options.verbose, std::cout, std::cerr);
    }
    return static_cast<int>(report.exitCode);
}

#pragma once

#include "console/report/Report.h"
#include "console/text/Progress.h"

#include <filesystem>
#include <functional>
#include <map>

namespace CLI
{
class App;
}

namespace velox::console
{

/// Where the library's log lines go, besides the command's own use of them.
struct LogOptions
{
    bool verbose = false;            ///< --verbose: to the standard error stream
    std::filesystem::path logFile{}; ///< --log-file: to its end
};

/// What main hands to a command.
struct Context
{
    Progress& progress;
    const LogOptions& log;
    std::filesystem::path page{}; ///< that main writes when the command has ended; empty for none
};

using Command = std::function<Report(Context&)>;

/// What each command is, by its subcommand of the command line. Every *Command.cpp has one function that declares the command's
/// options and adds what runs it: void AddInspectCommand(CLI::App& app, Commands& commands).
struct Commands
{
    std::map<const CLI::App*, Command> run;
    std::string page; ///< --report FILE.html of a command that has it

    /// Declares --report.
    void AddPageOption(CLI::App* command);
};

} // namespace velox::console

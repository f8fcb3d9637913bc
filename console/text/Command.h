#pragma once

#include "console/text/Outcome.h"
#include "console/text/Progress.h"
#include "console/text/Style.h"

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
    bool verbose = false;          ///< --verbose: to the standard error stream
    std::filesystem::path logFile; ///< where SetLogToFile writes
};

/// What main hands to a command.
struct Context
{
    const Style& style;
    Progress& progress;
    const LogOptions& log;
};

using Command = std::function<Outcome(Context&)>;

/// What each command is, by its subcommand of the command line. Every *Command.cpp has one function that declares the command's
/// options and adds what runs it: void AddInspectCommand(CLI::App& app, Commands& commands).
using Commands = std::map<const CLI::App*, Command>;

} // namespace velox::console

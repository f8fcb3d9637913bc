#pragma once

#include "console/text/CommandFailure.h"
#include "console/text/LogOptions.h"
#include "console/text/Outcome.h"
#include "console/text/Progress.h"
#include "console/text/Style.h"

#include <functional>
#include <map>

namespace CLI
{
class App;
}

namespace velox::console
{

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

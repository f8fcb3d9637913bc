#include "Commands.h"

namespace velox::console
{

void AddCommands(CLI::App& app, Commands& commands)
{
    // One line for each command: AddInspectCommand(app, commands);
    (void)app;
    (void)commands;
}

} // namespace velox::console

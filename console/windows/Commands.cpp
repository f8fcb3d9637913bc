#include "Commands.h"

#include "ArmCommand.h"
#include "CapabilitiesCommand.h"

namespace velox::console
{

void AddCommands(CLI::App& app, Commands& commands)
{
    AddCapabilitiesCommand(app, commands);
    AddArmCommand(app, commands);
}

} // namespace velox::console

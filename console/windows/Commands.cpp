#include "Commands.h"

#include "ArmCommand.h"
#include "CapabilitiesCommand.h"
#include "DoctorCommand.h"
#include "EnrollCommand.h"
#include "InspectCommand.h"
#include "ListenCommand.h"
#include "MakeLanguageCommand.h"
#include "VerifyCommand.h"

namespace velox::console
{

void AddCommands(CLI::App& app, Commands& commands)
{
    AddDoctorCommand(app, commands);
    AddCapabilitiesCommand(app, commands);
    AddVerifyCommand(app, commands);
    AddEnrollCommand(app, commands);
    AddArmCommand(app, commands);
    AddListenCommand(app, commands);
    AddInspectCommand(app, commands);
    AddMakeLanguageCommand(app, commands);
}

} // namespace velox::console

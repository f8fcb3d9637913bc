#include "console/Commands.h"

#include "console/audio/MicrophoneCommands.h"
#include "console/doctor/DoctorCommand.h"
#include "console/hosting/CapabilitiesCommand.h"
#include "console/inspect/InspectCommand.h"
#include "console/languages/MakeLanguageCommand.h"
#include "console/listening/PatternCommands.h"
#include "console/takes/EnrollCommand.h"
#include "console/takes/VerifyCommand.h"

namespace velox::console
{

void AddCommands(CLI::App& app, Commands& commands)
{
    AddDoctorCommand(app, commands);
    AddCapabilitiesCommand(app, commands);
    AddDevicesCommand(app, commands);
    AddVerifyCommand(app, commands);
    AddEnrollCommand(app, commands);
    AddArmCommand(app, commands);
    AddListenCommand(app, commands);
    AddInspectCommand(app, commands);
    AddMakeLanguageCommand(app, commands);
}

} // namespace velox::console

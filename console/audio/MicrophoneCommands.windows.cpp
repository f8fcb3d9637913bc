#include "console/audio/MicrophoneCommands.h"

#include "console/audio/PortAudioMicrophone.h"

#include <CLI/CLI.hpp>

namespace velox::console
{

void AddDevicesCommand(CLI::App& app, Commands& commands)
{
    CLI::App* command = app.add_subcommand("devices", "List the microphones");
    command->footer("  velox-kws devices\n");
    commands.run[command] = [](Context&) {
        return DeviceReport(FindMicrophones());
    };
}

CLI::Option* AddMicrophoneOption(CLI::App* command, CLI::Option* recordings, std::optional<std::string>* name)
{
    CLI::Option* option =
        command
            ->add_option_function<std::string>(
                "--microphone", [name](const std::string& part) { *name = part; },
                "Hear a microphone in place of recordings: part of its name (velox-kws devices), else the default")
            ->expected(0, 1)
            ->excludes(recordings)
            ->type_name("NAME");
    command->callback([recordings, option] {
        if (recordings->count() + option->count() == 0)
        {
            throw CLI::RequiredError("WAV or --microphone");
        }
    });
    return option;
}

} // namespace velox::console

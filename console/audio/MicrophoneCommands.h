#pragma once

#include "console/report/Command.h"

#include <optional>
#include <string>

namespace CLI
{
class Option;
}

namespace velox::console
{

/// velox-kws devices: lists the microphones.
void AddDevicesCommand(CLI::App& app, Commands& commands);

/// Declares --microphone of a command that takes it or recordings, and one of them.
/// @param name  receives a part of the device's name, or an empty one for the default device; nothing when recordings are given
CLI::Option* AddMicrophoneOption(CLI::App* command, CLI::Option* recordings, std::optional<std::string>* name);

} // namespace velox::console

#pragma once

#include "console/audio/AudioDevice.h"
#include "console/audio/Microphone.h"

#include <memory>

namespace velox::console
{

/// The system's microphones, in its order.
/// @throws CommandFailure BadInput when the system's sound does not work
std::vector<AudioDevice> FindMicrophones();

/// Opens a microphone; from then on it is heard.
/// @param name  as ChooseDevice takes it
/// @throws CommandFailure BadInput when there is none, or it cannot be opened
std::unique_ptr<Microphone> OpenMicrophone(const std::string& name);

} // namespace velox::console

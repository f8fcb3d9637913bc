#pragma once

#include "console/report/Report.h"

#include <span>
#include <string>
#include <vector>

namespace velox::console
{

/// A microphone, or another device that sound can be heard from.
struct AudioDevice
{
    int number = 0; ///< by which it is opened
    std::string name;
    std::string host; ///< the system's interface that offers it
    int rate = 0;     ///< in Hz
    int channels = 0;
    bool isDefault = false;
};

/// The device that a command is to listen to.
/// @param name  a part of its name, capitals do not matter; empty for the default device. Of several the first one is taken
/// @throws CommandFailure BadInput when there is none
const AudioDevice& ChooseDevice(std::span<const AudioDevice> devices, const std::string& name);

/// What velox-kws devices tells.
Report DeviceReport(std::span<const AudioDevice> devices);

} // namespace velox::console

#pragma once

#include <string>

namespace CLI
{
class App;
}

namespace velox::console
{

/// What a command needs for a detector, as it stands on the command line.
struct DetectorOptions
{
    std::string configuration;
    std::string detectorId;
};

/// Declares --config and --detector-id, with their defaults.
void AddDetectorOptions(CLI::App* command, DetectorOptions* options);

} // namespace velox::console

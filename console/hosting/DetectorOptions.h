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
    std::string through{}; ///< ThroughAdapter, or else the library itself
};

/// The console's own detector, and the class of the reference OEM adapter.
inline constexpr const char* DefaultDetectorId = "{3B0E9B6C-5C1D-4A57-8E07-61C2A94D7F25}";

/// What --through says for the registered OEM adapter.
inline constexpr const char* ThroughAdapter = "adapter";

/// Declares --config, --detector-id and --through, with their defaults.
void AddDetectorOptions(CLI::App* command, DetectorOptions* options);

} // namespace velox::console

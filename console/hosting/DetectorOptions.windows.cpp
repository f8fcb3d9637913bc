#include "console/hosting/DetectorOptions.h"

#include "console/text/Utf8Path.h"

#include <CLI/CLI.hpp>

#include <cstdlib>

namespace velox::console
{

namespace
{

/// A project's configuration is named once for all commands by the environment, or lies in the working folder.
std::string DefaultConfiguration()
{
    const wchar_t* named = _wgetenv(L"VELOX_KWS_CONFIG");
    return named != nullptr && *named != L'\0' ? Utf8(named) : "VeloxKwsConfig.xml";
}

/// The console's own detector.
constexpr const char* ConsoleDetector = "{3B0E9B6C-5C1D-4A57-8E07-61C2A94D7F25}";

} // namespace

void AddDetectorOptions(CLI::App* command, DetectorOptions* options)
{
    options->configuration = DefaultConfiguration();
    options->detectorId = ConsoleDetector;
    command
        ->add_option("--config", options->configuration,
                     "Configuration file; without it the environment's VELOX_KWS_CONFIG, else VeloxKwsConfig.xml here")
        ->type_name("FILE");
    command
        ->add_option("--detector-id", options->detectorId, "Detector GUID in arming and result blocks; default the console's own")
        ->type_name("GUID");
}

} // namespace velox::console

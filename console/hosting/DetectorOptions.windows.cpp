#include "console/hosting/DetectorOptions.h"

#include "console/hosting/AdapterClass.h"
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

} // namespace

void AddDetectorOptions(CLI::App* command, DetectorOptions* options)
{
    options->configuration = DefaultConfiguration();
    options->detectorId = DefaultDetectorId;
    command
        ->add_option("--config", options->configuration,
                     "Configuration file; without it the environment's VELOX_KWS_CONFIG, else VeloxKwsConfig.xml here")
        ->type_name("FILE");
    command
        ->add_option("--detector-id", options->detectorId, "Detector GUID in arming and result blocks; default the console's own")
        ->type_name("GUID");
    command
        ->add_option("--through", options->through,
                     "adapter: work through the OEM adapter that is registered as the class --detector-id, with the "
                     "configuration file that it names; library (default): through the library itself")
        ->check(CLI::IsMember({"library", ThroughAdapter}))
        ->type_name("WAY");
    command->parse_complete_callback([command, options] {
        if (options->through == ThroughAdapter && command->get_option("--config")->count() == 0)
        {
            const auto adapter = FindAdapterClass(options->detectorId);
            if (!adapter)
            {
                throw CLI::ValidationError("--through", "No class " + options->detectorId +
                                                            " is registered: regsvr32 VeloxOemAdapter.dll, as administrator.");
            }
            options->configuration = Utf8(adapter->configuration);
        }
    });
}

} // namespace velox::console

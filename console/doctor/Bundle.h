#pragma once

#include "console/doctor/ConfigurationCheck.h"
#include "console/doctor/SystemCheck.h"

namespace velox::console
{

/// What a support bundle is made of.
struct BundleContents
{
    std::string system; ///< Windows' version and code page
    const Report& report;
    std::filesystem::path configuration;
    const std::vector<ConfiguredFile>& files;
    const RegistrySettings& settings;
    const EngineFacts& engine;
    std::vector<std::filesystem::path> logs; ///< those that are there are looked into
};

/// One text for whoever helps from afar, in UTF-8: what doctor found, the configuration's text, settings, versions, the end of
/// the log. Of the named files sizes and checksums, so neither voice nor a model's contents.
std::string BundleText(const BundleContents& contents);

} // namespace velox::console

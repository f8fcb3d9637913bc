#pragma once

#include "console/doctor/LanguageCheck.h"

#include <filesystem>
#include <string>
#include <vector>

namespace velox::console
{

struct ConfigurationCheck
{
    Findings findings{};
    bool usable = false;                 ///< the file could be loaded and has a root
    std::vector<uint16_t> languages{};   ///< that a caller can ask for, in the file's order
    std::vector<ConfiguredFile> files{}; ///< that it names: constraints, and each language's
};

/// Everything that can be wrong with a configuration file and the files that it names, in the library's eyes
/// (docs/configuration.md).
ConfigurationCheck CheckConfiguration(const std::filesystem::path& file);

} // namespace velox::console

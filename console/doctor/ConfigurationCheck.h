#pragma once

#include "console/doctor/Finding.h"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace velox::console
{

/// "English (United States)" for 1033; empty when nobody knows the LANGID.
using LanguageNames = std::function<std::string(uint16_t language)>;

struct ConfigurationCheck
{
    Findings findings;
    bool usable = false;             ///< the file could be loaded and has a root
    std::vector<uint16_t> languages; ///< that a caller can ask for, in the file's order
    std::size_t files = 0;           ///< that the languages name
};

/// Everything that can be wrong with a configuration file and the files that it names, in the library's eyes
/// (docs/configuration.md).
ConfigurationCheck CheckConfiguration(const std::filesystem::path& file, const LanguageNames& names);

} // namespace velox::console

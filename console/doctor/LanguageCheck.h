#pragma once

#include "console/doctor/Finding.h"

#include <tinyxml2.h>

#include <string>

namespace velox::console
{

/// What a language's check needs to know of the rest.
struct LanguageSurroundings
{
    std::string configuration;   ///< the file's name in findings
    std::string directory;       ///< the root's attribute
    bool filesReachable = false; ///< the directory is there
};

/// A file that the configuration names.
struct ConfiguredFile
{
    std::string element; ///< "acousticModel", or the root's attribute "constraints"
    std::string path;    ///< as the library puts it together
};

/// The files that a language element names: models, then thresholds.
std::vector<ConfiguredFile> FilesOf(const tinyxml2::XMLElement& language, const std::string& directory);

/// Checks what stands in a language element, apart from its id: quality threshold, model files, threshold files.
void CheckLanguage(const tinyxml2::XMLElement& language, uint16_t id, const LanguageSurroundings& surroundings,
                   Findings* findings);

/// What the check of an id or a quality says of how the number is written; nothing when it is one alone.
/// @param value  that the library takes
std::optional<std::string> OddNumber(const char* text, int64_t value);

} // namespace velox::console

#pragma once

#include "console/doctor/Finding.h"

#include <tinyxml2.h>

#include <filesystem>

namespace velox::console
{

/// A file that the configuration names.
struct ConfiguredFile
{
    std::string element; ///< "acousticModel", or the root's attribute "constraints"
    std::string path;    ///< as the library puts it together
};

struct ConfigurationCheck
{
    Findings findings{};
    bool usable = false;                 ///< the file could be loaded and has a root
    std::string directory{};             ///< of models and thresholds, the root's attribute
    bool filesReachable = false;         ///< the directory is there
    std::vector<uint16_t> languages{};   ///< that a caller can ask for, in the file's order
    std::vector<ConfiguredFile> files{}; ///< that it names: constraints, and each language's models, then thresholds
};

/// Everything that can be wrong with a configuration file and the files that it names, in the library's eyes
/// (docs/configuration.md).
ConfigurationCheck CheckConfiguration(const std::filesystem::path& file);

/// Checks what stands in a language element, apart from its id: quality threshold, model files, threshold files.
/// @param configuration  the file's name in findings
/// @param check          knows the directory; findings and files are added
void CheckLanguage(const tinyxml2::XMLElement& language, uint16_t id, const std::string& configuration,
                   ConfigurationCheck* check);

// What root and language elements have in common.

/// The line of an element's attribute, or its own where it has none of that name.
int LineOf(const tinyxml2::XMLElement& element, const char* attribute);

/// Warns of attributes that the library ignores.
void CheckAttributeNames(const tinyxml2::XMLElement& element, std::initializer_list<std::string_view> known,
                         const Subject& subject);

/// Tells what is odd about how a number is written, which the library reads as sscanf does.
/// @param what   the number, at the beginning of a sentence
/// @param value  that the library takes
void CheckNumber(const tinyxml2::XMLAttribute& attribute, std::string_view what, int64_t value, const Subject& subject);

} // namespace velox::console

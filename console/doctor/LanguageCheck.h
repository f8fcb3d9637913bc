#pragma once

#include "console/doctor/Finding.h"
#include "console/doctor/NamedFile.h"

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
    NamedFiles& files;
};

/// Checks what stands in a language element, apart from its id: quality threshold, model files, threshold files.
/// @return how many files the element names
std::size_t CheckLanguage(const tinyxml2::XMLElement& language, uint16_t id, const LanguageSurroundings& surroundings,
                          Findings* findings);

} // namespace velox::console

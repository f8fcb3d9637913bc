#pragma once

#include "console/doctor/Finding.h"

#include <tinyxml2.h>

#include <filesystem>

namespace velox::console
{

/// Loads a configuration file as the library does, and tells what is wrong with its text.
/// @return whether it could be loaded and has a root element
bool LoadConfigurationXml(const std::filesystem::path& file, tinyxml2::XMLDocument* document, Findings* findings);

} // namespace velox::console

#pragma once

#include <tinyxml2.h>

#include <filesystem>
#include <optional>
#include <string>

namespace velox::console
{

/// Why a configuration file cannot be used.
struct XmlProblem
{
    int line = 0; ///< 0: of no line
    std::string message;
    std::string fix;
};

/// Loads a configuration file as the library does.
/// @return nothing when it could be loaded and has a root element
std::optional<XmlProblem> LoadConfigurationXml(const std::filesystem::path& file, tinyxml2::XMLDocument* document);

/// The same for commands that cannot go on without it.
/// @throws CommandFailure BadConfiguration
void RequireConfigurationXml(const std::filesystem::path& file, tinyxml2::XMLDocument* document);

} // namespace velox::console

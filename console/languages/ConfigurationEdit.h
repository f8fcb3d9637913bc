#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace velox::console
{

/// A language as it is to stand in a configuration file.
struct LanguageEntry
{
    uint16_t id = 0;
    std::optional<int> qualityThreshold; ///< nothing: what stands there, or DefaultQualityThreshold
    /// Elements and the files that they name, in the configuration's `directory`.
    std::vector<std::pair<std::string, std::string>> files;
};

inline constexpr int DefaultQualityThreshold = 10;

struct ConfigurationEdit
{
    std::string text;                  ///< of the whole file
    std::filesystem::path constraints; ///< that it names
    bool replaces = false;             ///< the language was there
};

/// Adds a language to a configuration, or makes a new configuration when there is no such file. Comments, the order and the other
/// languages stay. Nothing is written.
///
/// @param directory  where the language's files are; must be the configuration's own when it names one
/// @param replace    whether a language with the same id may be changed, in its place
/// @throws CommandFailure BadConfiguration
ConfigurationEdit AddLanguage(const std::filesystem::path& configuration, const std::filesystem::path& directory,
                              const LanguageEntry& entry, bool replace);

} // namespace velox::console

#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace velox::console
{

/// One language of the configuration file. A path is `directory` and the name, as the library joins them; empty when not named.
struct ConfiguredLanguage
{
    uint16_t id = 0;
    std::optional<int> qualityThreshold;
    std::filesystem::path keyphraseModel;
    std::filesystem::path acousticModel;
    std::filesystem::path znormPopulation;
    std::filesystem::path firmwareModel;
    std::filesystem::path preDefinedThreshold;
    std::filesystem::path userDefinedThreshold;
};

/// What stands in a configuration file, read leniently: what is missing stays empty. docs/configuration.md describes it.
struct ConfigurationFile
{
    std::filesystem::path directory;
    std::filesystem::path constraints;
    std::vector<ConfiguredLanguage> languages;

    /// @return null when the language is not configured
    const ConfiguredLanguage* Find(uint16_t language) const;
};

/// @throws CommandFailure BadConfiguration when the file is missing or not well-formed
ConfigurationFile ReadConfigurationFile(const std::filesystem::path& file);

/// Reads the number that a threshold file begins with, as the library does.
/// @return nothing when the file is missing or begins with no number
std::optional<double> ReadThreshold(const std::filesystem::path& file);

} // namespace velox::console

#pragma once

#include "console/doctor/Finding.h"
#include "console/hosting/AdapterClass.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace velox::console
{

/// What an adapter or the library announces, or why it does not.
struct AnnouncedFacts
{
    std::string failure{}; ///< empty when it answered
    std::vector<uint32_t> keywordIds{};
    std::vector<uint16_t> languages{};
    bool supportsUserModels = false;

    bool operator==(const AnnouncedFacts&) const = default;
};

/// What was found out about the OEM adapter that is registered as the detector's class.
struct AdapterFacts
{
    std::optional<AdapterClass> registered{}; ///< nothing: no class; what follows is meaningless then
    bool isModuleThere = false;
    uint16_t machine = 0; ///< of the module's header; 0 when it is no program
    bool isConfigurationThere = false;
    std::vector<std::string> settingProblems{}; ///< a sentence for each value of its settings that cannot be used
    AnnouncedFacts byAdapter{};
    AnnouncedFacts byLibrary{}; ///< with the adapter's configuration file
};

/// Looks the adapter up in the registry, creates it as Windows does, and asks it and the library what they announce.
AdapterFacts ProbeAdapter(const std::string& detectorId);

/// @param configuration  that doctor looks at
Findings CheckAdapter(const AdapterFacts& facts, const std::filesystem::path& configuration);

} // namespace velox::console

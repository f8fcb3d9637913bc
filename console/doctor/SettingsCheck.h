#pragma once

#include "console/doctor/Finding.h"

namespace velox::console
{

/// A value of the library's settings key as it stands in the registry.
struct RegistryValue
{
    std::string name;
    uint32_t type = 0; ///< REG_DWORD is 4
    std::vector<uint8_t> bytes;
};

/// What the registry holds for the library (docs/registry.md).
struct RegistrySettings
{
    bool keyReadable = false;
    std::vector<RegistryValue> values{};
    std::vector<std::string> valuesOf32Bit{}; ///< names in the 32-bit view, which the library does not read
};

/// Reads the library's settings key, in both views of the registry.
RegistrySettings ReadSettingsKey();

/// "LoggerLevel, type 4: 04 00 00 00"
std::string RegistryText(const RegistryValue& value);

/// What the values lead to.
Findings CheckSettings(const RegistrySettings& settings);

} // namespace velox::console

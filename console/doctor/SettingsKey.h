#pragma once

#include "console/doctor/SettingsCheck.h"

namespace velox::console
{

/// Reads the library's settings key, in both views of the registry.
RegistrySettings ReadSettingsKey();

} // namespace velox::console

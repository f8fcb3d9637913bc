#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace velox::console
{

/// An OEM adapter as the registry names it (docs/oem-adapter.md).
struct AdapterClass
{
    std::filesystem::path module;
    std::string threadingModel;
    std::filesystem::path configuration; ///< as the adapter's settings name it, or else where it looks
    bool isConfigurationNamed = false;
};

/// @param detectorId  GUID of the class
/// @return nothing when no class of this GUID is registered
std::optional<AdapterClass> FindAdapterClass(const std::string& detectorId);

} // namespace velox::console

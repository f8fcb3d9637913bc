#pragma once

#include "console/doctor/Finding.h"

namespace velox::console
{

/// What was found out about a DLL.
struct DllFacts
{
    std::string name{};    ///< "VeloxWovSDK.dll"
    std::string path{};    ///< where Windows found it; empty when nowhere
    std::string version{}; ///< of its version resource; empty without one
    bool loaded = false;
    std::string loadError{}; ///< Windows' words; empty when it was loaded
};

/// What the session told that is opened for the frame size only, as the library does.
struct FrameSizeFacts
{
    uint32_t status = 0; ///< of the first call that failed
    uint32_t count = 0;
    int32_t samples = 0;
};

struct EngineFacts
{
    DllFacts library{};
    DllFacts engine{};
    std::vector<std::string> missingFunctions{};
    FrameSizeFacts frameSize{}; ///< meaningful when the engine is loaded and no function is missing
};

/// Looks for the engine and the library as Windows does for this program, and asks the engine for its frame size in a session of
/// its own, as the library does.
EngineFacts ProbeEngine();

/// "1.0.0.0" of a program's version resource; empty without one.
std::string FileVersionOf(const std::wstring& path);

Findings CheckEngine(const EngineFacts& facts);

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

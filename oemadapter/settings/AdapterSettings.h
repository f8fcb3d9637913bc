#pragma once

#include "oemadapter/windows/WideText.h"

#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

namespace velox::oemadapter
{

/// What an OEM or an administrator sets, from the values of HKLM\SOFTWARE\Velox\KeywordDetectorAdapter\OemAdapter (64-bit view).
/// Every value may be missing. Level and switch of the log are the library's values LoggerLevel and LogToFile, one key above.
struct AdapterSettings
{
    /// ConfigurationFile, REG_SZ or REG_EXPAND_SZ: absolute path of the library's configuration file.
    /// Default: VeloxKwsConfig.xml beside the adapter's DLL.
    WideText configurationFile;

    /// LogFile, REG_SZ or REG_EXPAND_SZ: absolute path. Default: %ProgramData%\Velox\VeloxOemAdapter.log.
    WideText logFile;

    /// EventId and EventProviderId, REG_SZ: "{...}", the GUIDs of the detection event as Microsoft issued them to the OEM. The
    /// defaults are placeholders, which no assistant knows.
    GUID eventId{0x5E2D7A91, 0x3C46, 0x4B0F, {0x9D, 0x18, 0x7A, 0x64, 0xF2, 0x0B, 0xC3, 0x5D}};
    GUID eventProviderId{0x91B7C4E2, 0x6A0D, 0x4F35, {0xA8, 0x2C, 0x1E, 0x95, 0x40, 0xD7, 0x6B, 0x83}};

    /// EventName, REG_SZ: the event's display name, at most 99 letters.
    WideText eventName = u"Velox keyword";

    /// UserRecordings, REG_DWORD: how many recordings a training takes, 1 to 16.
    uint32_t userRecordings = 3;

    bool operator==(const AdapterSettings&) const = default;
};

/// @param problems  receives a line for each value that cannot be used; its default holds
/// @throws std::bad_alloc
AdapterSettings ReadAdapterSettings(std::vector<std::string>* problems);

} // namespace velox::oemadapter

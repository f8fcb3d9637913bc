#pragma once

#include <windows.h>

#include <cstdint>
#include <utility>

/// Owns the open registry key that holds the library's settings.
class RegistryKey
{
public:
    RegistryKey() = default;
    RegistryKey(const RegistryKey&) = delete;
    RegistryKey& operator=(const RegistryKey&) = delete;
    ~RegistryKey()
    {
        Close();
    }

    /// Opens the settings key for queries, always in the 64-bit view of the registry.
    LSTATUS Open()
    {
        return RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Velox\\KeywordDetectorAdapter", 0, KEY_QUERY_VALUE | KEY_WOW64_64KEY,
                             &key);
    }

    /// Reads four bytes of a value of any type; a longer value fails. `value` is written only on success.
    LSTATUS Query(const wchar_t* valueName, int32_t* value) const
    {
        int32_t found = 0;
        DWORD size = sizeof(found);
        const LSTATUS status = RegQueryValueExW(key, valueName, nullptr, nullptr, reinterpret_cast<BYTE*>(&found), &size);
        if (status == ERROR_SUCCESS)
        {
            *value = found;
        }
        return status;
    }

    /// Closes the key, if it is open.
    LSTATUS Close()
    {
        HKEY open = std::exchange(key, nullptr);
        return open == nullptr ? ERROR_SUCCESS : RegCloseKey(open);
    }

private:
    HKEY key = nullptr;
};

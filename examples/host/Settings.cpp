#include "Settings.h"

#include <windows.h>

#include <stdexcept>
#include <string>

void WriteSetting(const wchar_t* name, uint32_t value)
{
    // The library looks into the 64-bit view only, whatever the host is.
    HKEY key = nullptr;
    LSTATUS status = RegCreateKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Velox\\KeywordDetectorAdapter", 0, nullptr, 0,
                                     KEY_SET_VALUE | KEY_WOW64_64KEY, nullptr, &key, nullptr);
    if (status == ERROR_SUCCESS)
    {
        status = RegSetValueExW(key, name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&value), sizeof(value));
        RegCloseKey(key);
    }
    if (status != ERROR_SUCCESS)
    {
        throw std::runtime_error("The registry value cannot be set: status " + std::to_string(status));
    }
}

#include "tests/support/Registry.h"

#include "tests/support/RegistryAdministrator.h"

#include <windows.h>

#include <stdexcept>
#include <string>

namespace
{

constexpr const wchar_t* SettingsKey = L"SOFTWARE\\Velox\\KeywordDetectorAdapter";

void Check(LSTATUS status, const char* what)
{
    if (status != ERROR_SUCCESS)
    {
        throw std::runtime_error(std::string(what) + " of the settings key failed: " + std::to_string(status));
    }
}

void WriteValue(const wchar_t* name, DWORD type, const void* data, DWORD size)
{
    HKEY key = nullptr;
    Check(
        RegCreateKeyExW(HKEY_LOCAL_MACHINE, SettingsKey, 0, nullptr, 0, KEY_SET_VALUE | KEY_WOW64_64KEY, nullptr, &key, nullptr),
        "creation");
    const LSTATUS status = RegSetValueExW(key, name, 0, type, static_cast<const BYTE*>(data), size);
    RegCloseKey(key);
    Check(status, "a value");
}

} // namespace

void RemoveSettingsKey()
{
    const LSTATUS status = RegDeleteTreeW(HKEY_LOCAL_MACHINE, SettingsKey);
    Check(status == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : status, "removal");
}

void WriteSettingsDword(const wchar_t* name, uint32_t value)
{
    WriteValue(name, REG_DWORD, &value, sizeof(value));
}

void WriteSettingsQword(const wchar_t* name, uint64_t value)
{
    WriteValue(name, REG_QWORD, &value, sizeof(value));
}

RegistryAdministrator::RegistryAdministrator() = default;
RegistryAdministrator::~RegistryAdministrator() = default;

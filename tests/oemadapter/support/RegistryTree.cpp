#include "tests/oemadapter/support/RegistryTree.h"

#include "tests/support/FaultInjector.h"
#include "tests/support/Registry.h"
#include "tests/support/RegistryAdministrator.h"

#include <array>
#include <cstring>
#include <stdexcept>

namespace
{

const WCHAR* Wide(const std::u16string& text)
{
    return reinterpret_cast<const WCHAR*>(text.c_str());
}

void Check(LSTATUS status)
{
    if (status != ERROR_SUCCESS)
    {
        throw std::runtime_error("the registry fails: " + std::to_string(status));
    }
}

std::optional<std::string> ReadValue(HKEY root, const std::u16string& path, const std::u16string& name)
{
    const FaultPause pause;
    HKEY key = nullptr;
    if (RegOpenKeyExW(root, Wide(path), 0, KEY_QUERY_VALUE | KEY_WOW64_64KEY, &key) != ERROR_SUCCESS)
    {
        return std::nullopt;
    }
    std::array<BYTE, 1024> bytes{};
    DWORD size = bytes.size();
    const LSTATUS status = RegQueryValueExW(key, Wide(name), nullptr, nullptr, bytes.data(), &size);
    RegCloseKey(key);
    return status == ERROR_SUCCESS ? std::optional(std::string(bytes.begin(), bytes.begin() + size)) : std::nullopt;
}

void RemoveKey(HKEY root, const std::u16string& path)
{
    HKEY key = nullptr;
    if (RegOpenKeyExW(root, Wide(path), 0, KEY_QUERY_VALUE | KEY_WOW64_64KEY, &key) == ERROR_SUCCESS)
    {
        RegCloseKey(key);
        Check(RegDeleteKeyExW(root, Wide(path), KEY_WOW64_64KEY, 0));
    }
}

} // namespace

void WriteValue(HKEY root, const std::u16string& path, const std::u16string& name, DWORD type, const std::string& bytes)
{
    const FaultPause pause;
    const RegistryAdministrator administrator;
    HKEY key = nullptr;
    Check(RegCreateKeyExW(root, Wide(path), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_SET_VALUE | KEY_WOW64_64KEY, nullptr, &key,
                          nullptr));
    const LSTATUS status =
        RegSetValueExW(key, Wide(name), 0, type, reinterpret_cast<const BYTE*>(bytes.data()), static_cast<DWORD>(bytes.size()));
    RegCloseKey(key);
    Check(status);
}

void WriteText(HKEY root, const std::u16string& key, const std::u16string& name, const std::u16string& text, DWORD type)
{
    WriteValue(root, key, name, type, {reinterpret_cast<const char*>(text.c_str()), (text.size() + 1) * sizeof(char16_t)});
}

void WriteNumber(HKEY root, const std::u16string& key, const std::u16string& name, DWORD number)
{
    WriteValue(root, key, name, REG_DWORD, {reinterpret_cast<const char*>(&number), sizeof(number)});
}

bool HasKey(HKEY root, const std::u16string& path)
{
    HKEY key = nullptr;
    if (RegOpenKeyExW(root, Wide(path), 0, KEY_QUERY_VALUE | KEY_WOW64_64KEY, &key) != ERROR_SUCCESS)
    {
        return false;
    }
    RegCloseKey(key);
    return true;
}

std::optional<std::u16string> ReadText(HKEY root, const std::u16string& key, const std::u16string& name)
{
    const std::optional<std::string> bytes = ReadValue(root, key, name);
    if (!bytes)
    {
        return std::nullopt;
    }
    std::u16string text(bytes->size() / sizeof(char16_t), u'\0');
    std::memcpy(text.data(), bytes->data(), text.size() * sizeof(char16_t));
    text.resize(std::min(text.find(u'\0'), text.size()));
    return text;
}

std::optional<DWORD> ReadNumber(HKEY root, const std::u16string& key, const std::u16string& name)
{
    const std::optional<std::string> bytes = ReadValue(root, key, name);
    DWORD number = 0;
    if (!bytes || bytes->size() != sizeof(number))
    {
        return std::nullopt;
    }
    std::memcpy(&number, bytes->data(), sizeof(number));
    return number;
}

void RemoveAdapterKeys()
{
    const FaultPause pause;
    const RegistryAdministrator administrator;
    RemoveKey(HKEY_LOCAL_MACHINE, AdapterKey);
    RemoveSettingsKey();
    RemoveKey(HKEY_CURRENT_USER, UserKey);
    for (const char16_t* key : {u"\\InprocServer32\\Foreign", u"\\InprocServer32", u"\\Foreign", u""})
    {
        RemoveKey(HKEY_LOCAL_MACHINE, ClassKey + std::u16string(key));
    }
}

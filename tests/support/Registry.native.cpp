#include "tests/support/Registry.h"

#include "tests/support/FaultInjector.h"
#include "tests/support/RegistryDouble.h"

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace
{

struct Value
{
    DWORD type;
    std::vector<BYTE> data;
};

/// Values by their names in lower case. Not std::wstring: wchar_t has 16 bits here, and 32 in the C++ runtime.
using Values = std::map<std::u16string, Value>;

std::optional<Values> settings;
std::vector<std::unique_ptr<int>> openKeys;

std::u16string LowerCase(const wchar_t* text)
{
    std::u16string lower;
    for (; *text != 0; ++text)
    {
        lower += static_cast<char16_t>(L'A' <= *text && *text <= L'Z' ? *text - L'A' + L'a' : *text);
    }
    return lower;
}

auto FindOpen(HKEY key)
{
    return std::find_if(openKeys.begin(), openKeys.end(),
                        [key](const auto& open) { return static_cast<void*>(open.get()) == static_cast<void*>(key); });
}

template <typename Number>
void WriteValue(const wchar_t* name, DWORD type, Number number)
{
    const FaultPause pause;
    const auto* bytes = reinterpret_cast<const BYTE*>(&number);
    if (!settings)
    {
        settings.emplace();
    }
    settings->insert_or_assign(LowerCase(name), Value{type, {bytes, bytes + sizeof(number)}});
}

} // namespace

std::size_t OpenRegistryKeys()
{
    return openKeys.size();
}

void RemoveSettingsKey()
{
    settings.reset();
}

void WriteSettingsDword(const wchar_t* name, uint32_t value)
{
    WriteValue(name, REG_DWORD, value);
}

void WriteSettingsQword(const wchar_t* name, uint64_t value)
{
    WriteValue(name, REG_QWORD, value);
}

/// Knows one key, and only as the library must open it.
LSTATUS WINAPI RegOpenKeyExW(HKEY parent, LPCWSTR subkey, DWORD options, REGSAM access, PHKEY opened)
{
    if (FaultPlan::ShouldFail(FallibleCall::RegistryOpen))
    {
        return ERROR_ACCESS_DENIED;
    }
    const FaultPause pause;
    if (!settings || parent != HKEY_LOCAL_MACHINE || LowerCase(subkey) != u"software\\velox\\keyworddetectoradapter" ||
        options != 0 || access != (KEY_QUERY_VALUE | KEY_WOW64_64KEY))
    {
        return ERROR_FILE_NOT_FOUND;
    }
    openKeys.push_back(std::make_unique<int>());
    *opened = static_cast<HKEY>(static_cast<void*>(openKeys.back().get()));
    return ERROR_SUCCESS;
}

LSTATUS WINAPI RegQueryValueExW(HKEY key, LPCWSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data, LPDWORD size)
{
    if (FaultPlan::ShouldFail(FallibleCall::RegistryQuery))
    {
        return ERROR_ACCESS_DENIED;
    }
    const FaultPause pause;
    if (FindOpen(key) == openKeys.end())
    {
        return ERROR_INVALID_HANDLE;
    }
    if (reserved != nullptr || (data != nullptr && size == nullptr))
    {
        return ERROR_INVALID_PARAMETER;
    }
    if (!settings)
    {
        return ERROR_KEY_DELETED;
    }
    const auto found = settings->find(LowerCase(name));
    if (found == settings->end())
    {
        return ERROR_FILE_NOT_FOUND;
    }
    const Value& value = found->second;
    if (type != nullptr)
    {
        *type = value.type;
    }
    const DWORD room = size == nullptr ? 0 : *size;
    if (size != nullptr)
    {
        *size = static_cast<DWORD>(value.data.size());
    }
    if (data == nullptr)
    {
        return ERROR_SUCCESS;
    }
    if (room < value.data.size())
    {
        return ERROR_MORE_DATA;
    }
    std::memcpy(data, value.data.data(), value.data.size());
    return ERROR_SUCCESS;
}

/// A close that is made to fail closes the key all the same: its caller has no second way.
LSTATUS WINAPI RegCloseKey(HKEY key)
{
    const bool fails = FaultPlan::ShouldFail(FallibleCall::RegistryClose);
    const FaultPause pause;
    const auto open = FindOpen(key);
    if (open == openKeys.end())
    {
        return ERROR_INVALID_HANDLE;
    }
    openKeys.erase(open);
    return fails ? ERROR_INVALID_HANDLE : ERROR_SUCCESS;
}

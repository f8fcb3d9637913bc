#include "tests/support/Registry.h"

#include "tests/support/FaultInjector.h"
#include "tests/support/RegistryAdministrator.h"
#include "tests/support/RegistryDouble.h"

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace
{

/// Not std::wstring: wchar_t has 16 bits here, and 32 in the C++ runtime.
using Text = std::u16string;

struct Value
{
    DWORD type;
    std::vector<BYTE> data;
};

/// Values by their names in lower case; the default value's is empty.
using Values = std::map<Text, Value>;

/// A key's place: its root, and its path in lower case.
using Place = std::pair<HKEY, Text>;

struct OpenKey
{
    Place place;
    REGSAM access;
};

/// Of whoever looks at what follows or changes it.
std::mutex mutex;
std::map<Place, Values> keys;
std::vector<std::unique_ptr<OpenKey>> openKeys;
std::size_t unknownKeysClosed = 0;
int administrators = 0;

const Text SettingsKey = u"software\\velox\\keyworddetectoradapter";

Text LowerCase(const wchar_t* text)
{
    Text lower;
    for (; text != nullptr && *text != 0; ++text)
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

/// The values of an open key, if it was opened for this.
LSTATUS FindValues(HKEY key, REGSAM access, Values** values)
{
    const auto open = FindOpen(key);
    if (open == openKeys.end())
    {
        return ERROR_INVALID_HANDLE;
    }
    if (((*open)->access & access) == 0)
    {
        return ERROR_ACCESS_DENIED;
    }
    const auto found = keys.find((*open)->place);
    if (found == keys.end())
    {
        return ERROR_KEY_DELETED;
    }
    *values = &found->second;
    return ERROR_SUCCESS;
}

/// Whoever changes what is all users' must be an administrator.
bool MayOpen(HKEY root, REGSAM access)
{
    return root != HKEY_LOCAL_MACHINE || administrators > 0 || access == (KEY_QUERY_VALUE | KEY_WOW64_64KEY);
}

bool LiesIn(const Place& place, const Place& parent)
{
    return place.first == parent.first && place.second.starts_with(parent.second + u"\\");
}

bool HasSubkeys(const Place& parent)
{
    return std::any_of(keys.begin(), keys.end(), [&](const auto& key) { return LiesIn(key.first, parent); });
}

/// Makes the key, and those that it lies in.
void Make(const Place& place)
{
    keys.try_emplace(place);
    if (const std::size_t end = place.second.find_last_of(u'\\'); end != Text::npos)
    {
        Make({place.first, place.second.substr(0, end)});
    }
}

HKEY Open(const Place& place, REGSAM access)
{
    openKeys.push_back(std::make_unique<OpenKey>(OpenKey{place, access}));
    return static_cast<HKEY>(static_cast<void*>(openKeys.back().get()));
}

template <typename Number>
void WriteValue(const wchar_t* name, DWORD type, Number number)
{
    const FaultPause pause;
    const std::scoped_lock lock(mutex);
    const auto* bytes = reinterpret_cast<const BYTE*>(&number);
    Make({HKEY_LOCAL_MACHINE, SettingsKey});
    keys[{HKEY_LOCAL_MACHINE, SettingsKey}].insert_or_assign(LowerCase(name), Value{type, {bytes, bytes + sizeof(number)}});
}

} // namespace

std::size_t OpenRegistryKeys()
{
    const std::scoped_lock lock(mutex);
    return openKeys.size();
}

std::size_t UnknownRegistryKeysClosed()
{
    return unknownKeysClosed;
}

RegistryAdministrator::RegistryAdministrator()
{
    const std::scoped_lock lock(mutex);
    ++administrators;
}

RegistryAdministrator::~RegistryAdministrator()
{
    const std::scoped_lock lock(mutex);
    --administrators;
}

void RemoveSettingsKey()
{
    const std::scoped_lock lock(mutex);
    const Place place{HKEY_LOCAL_MACHINE, SettingsKey};
    std::erase_if(keys, [&](const auto& key) { return key.first == place || LiesIn(key.first, place); });
}

void WriteSettingsDword(const wchar_t* name, uint32_t value)
{
    WriteValue(name, REG_DWORD, value);
}

void WriteSettingsQword(const wchar_t* name, uint64_t value)
{
    WriteValue(name, REG_QWORD, value);
}

/// Knows keys only in the 64-bit view; those of all users only with the least access that reads them, but for an administrator.
LSTATUS WINAPI RegOpenKeyExW(HKEY parent, LPCWSTR subkey, DWORD options, REGSAM access, PHKEY opened)
{
    if (FaultPlan::ShouldFail(FallibleCall::RegistryOpen))
    {
        return ERROR_ACCESS_DENIED;
    }
    const FaultPause pause;
    const std::scoped_lock lock(mutex);
    const Place place{parent, LowerCase(subkey)};
    if (!keys.contains(place) || options != 0 || (access & KEY_WOW64_64KEY) == 0)
    {
        return ERROR_FILE_NOT_FOUND;
    }
    if (!MayOpen(parent, access))
    {
        return ERROR_ACCESS_DENIED;
    }
    *opened = Open(place, access);
    return ERROR_SUCCESS;
}

LSTATUS WINAPI RegCreateKeyExW(HKEY parent, LPCWSTR subkey, DWORD reserved, LPWSTR keyClass, DWORD options, REGSAM access,
                               LPSECURITY_ATTRIBUTES security, PHKEY opened, LPDWORD /*disposition*/)
{
    if (FaultPlan::ShouldFail(FallibleCall::RegistryChange))
    {
        return ERROR_ACCESS_DENIED;
    }
    const FaultPause pause;
    const std::scoped_lock lock(mutex);
    if (reserved != 0 || keyClass != nullptr || options != REG_OPTION_NON_VOLATILE || security != nullptr ||
        (access & KEY_WOW64_64KEY) == 0)
    {
        return ERROR_INVALID_PARAMETER;
    }
    if (!MayOpen(parent, access))
    {
        return ERROR_ACCESS_DENIED;
    }
    const Place place{parent, LowerCase(subkey)};
    Make(place);
    *opened = Open(place, access);
    return ERROR_SUCCESS;
}

LSTATUS WINAPI RegQueryValueExW(HKEY key, LPCWSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data, LPDWORD size)
{
    if (FaultPlan::ShouldFail(FallibleCall::RegistryQuery))
    {
        return ERROR_ACCESS_DENIED;
    }
    const FaultPause pause;
    const std::scoped_lock lock(mutex);
    Values* values = nullptr;
    const LSTATUS status = FindValues(key, KEY_QUERY_VALUE, &values);
    if (status != ERROR_SUCCESS && status != ERROR_KEY_DELETED)
    {
        return status;
    }
    if (reserved != nullptr || (data != nullptr && size == nullptr))
    {
        return ERROR_INVALID_PARAMETER;
    }
    if (status == ERROR_KEY_DELETED)
    {
        return status;
    }
    const auto found = values->find(LowerCase(name));
    if (found == values->end())
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
    std::copy(value.data.begin(), value.data.end(), data);
    return ERROR_SUCCESS;
}

LSTATUS WINAPI RegSetValueExW(HKEY key, LPCWSTR name, DWORD /*reserved*/, DWORD type, const BYTE* data, DWORD size)
{
    if (FaultPlan::ShouldFail(FallibleCall::RegistryChange))
    {
        return ERROR_ACCESS_DENIED;
    }
    const FaultPause pause;
    const std::scoped_lock lock(mutex);
    Values* values = nullptr;
    if (const LSTATUS status = FindValues(key, KEY_SET_VALUE, &values); status != ERROR_SUCCESS)
    {
        return status;
    }
    values->insert_or_assign(LowerCase(name), Value{type, {data, data + size}});
    return ERROR_SUCCESS;
}

LSTATUS WINAPI RegDeleteValueW(HKEY key, LPCWSTR name)
{
    if (FaultPlan::ShouldFail(FallibleCall::RegistryChange))
    {
        return ERROR_ACCESS_DENIED;
    }
    const FaultPause pause;
    const std::scoped_lock lock(mutex);
    Values* values = nullptr;
    if (const LSTATUS status = FindValues(key, KEY_SET_VALUE, &values); status != ERROR_SUCCESS)
    {
        return status;
    }
    return values->erase(LowerCase(name)) == 0 ? ERROR_FILE_NOT_FOUND : ERROR_SUCCESS;
}

LSTATUS WINAPI RegDeleteKeyExW(HKEY parent, LPCWSTR subkey, REGSAM access, DWORD /*reserved*/)
{
    if (FaultPlan::ShouldFail(FallibleCall::RegistryChange))
    {
        return ERROR_ACCESS_DENIED;
    }
    const FaultPause pause;
    const std::scoped_lock lock(mutex);
    const Place place{parent, LowerCase(subkey)};
    if (access != KEY_WOW64_64KEY || !keys.contains(place))
    {
        return ERROR_FILE_NOT_FOUND;
    }
    if (!MayOpen(parent, DELETE) || HasSubkeys(place))
    {
        return ERROR_ACCESS_DENIED;
    }
    keys.erase(place);
    return ERROR_SUCCESS;
}

/// Counts subkeys as none or one, and values.
LSTATUS WINAPI RegQueryInfoKeyW(HKEY key, LPWSTR, LPDWORD, LPDWORD, LPDWORD subkeyCount, LPDWORD, LPDWORD, LPDWORD valueCount,
                                LPDWORD, LPDWORD, LPDWORD, FILETIME*)
{
    if (FaultPlan::ShouldFail(FallibleCall::RegistryQuery))
    {
        return ERROR_ACCESS_DENIED;
    }
    const std::scoped_lock lock(mutex);
    Values* values = nullptr;
    if (const LSTATUS status = FindValues(key, KEY_QUERY_VALUE, &values); status != ERROR_SUCCESS)
    {
        return status;
    }
    *subkeyCount = HasSubkeys((*FindOpen(key))->place) ? 1 : 0;
    *valueCount = static_cast<DWORD>(values->size());
    return ERROR_SUCCESS;
}

/// A close that is made to fail closes the key all the same: its caller has no second way.
LSTATUS WINAPI RegCloseKey(HKEY key)
{
    const bool fails = FaultPlan::ShouldFail(FallibleCall::RegistryClose);
    const FaultPause pause;
    const std::scoped_lock lock(mutex);
    const auto open = FindOpen(key);
    if (open == openKeys.end())
    {
        ++unknownKeysClosed;
        return ERROR_INVALID_HANDLE;
    }
    openKeys.erase(open);
    return fails ? ERROR_INVALID_HANDLE : ERROR_SUCCESS;
}

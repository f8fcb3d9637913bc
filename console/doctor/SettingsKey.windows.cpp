#include "console/doctor/SettingsCheck.h"
#include "console/text/Utf8Path.h"

#include <windows.h>

#include <memory>
#include <type_traits>

namespace velox::console
{

namespace
{

struct KeyCloser
{
    void operator()(HKEY key) const
    {
        RegCloseKey(key);
    }
};
using Key = std::unique_ptr<std::remove_pointer_t<HKEY>, KeyCloser>;

/// @return null when the key is not there, or may not be read
Key OpenSettings(REGSAM view)
{
    HKEY key = nullptr;
    const LSTATUS status =
        RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Velox\\KeywordDetectorAdapter", 0, KEY_QUERY_VALUE | view, &key);
    return Key(status == ERROR_SUCCESS ? key : nullptr);
}

std::vector<RegistryValue> ValuesOf(const Key& key)
{
    constexpr DWORD LongestName = 16384;
    constexpr DWORD LongestValue = 64;
    std::vector<RegistryValue> values;
    std::wstring name(LongestName, L'\0');
    for (DWORD i = 0; key; ++i)
    {
        DWORD nameLength = LongestName;
        RegistryValue value{{}, 0, std::vector<uint8_t>(LongestValue)};
        DWORD size = LongestValue;
        DWORD type = 0;
        const LSTATUS status = RegEnumValueW(key.get(), i, name.data(), &nameLength, nullptr, &type, value.bytes.data(), &size);
        if (status != ERROR_SUCCESS && status != ERROR_MORE_DATA)
        {
            break;
        }
        // A value that is longer counts by being longer than the library reads.
        value.bytes.resize(status == ERROR_SUCCESS ? size : LongestValue);
        value.name = Utf8(name.substr(0, nameLength));
        value.type = type;
        values.push_back(std::move(value));
    }
    return values;
}

} // namespace

RegistrySettings ReadSettingsKey()
{
    const Key key = OpenSettings(KEY_WOW64_64KEY);
    RegistrySettings settings{key != nullptr, ValuesOf(key)};
    for (const RegistryValue& value : ValuesOf(OpenSettings(KEY_WOW64_32KEY)))
    {
        settings.valuesOf32Bit.push_back(value.name);
    }
    return settings;
}

} // namespace velox::console

#include "console/doctor/SettingsKey.h"

#include "console/text/Utf8Path.h"

#include <windows.h>

namespace velox::console
{

namespace
{

/// Owns an open registry key.
class OpenKey
{
public:
    explicit OpenKey(REGSAM view)
    {
        if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Velox\\KeywordDetectorAdapter", 0, KEY_QUERY_VALUE | view, &key) !=
            ERROR_SUCCESS)
        {
            key = nullptr;
        }
    }
    OpenKey(const OpenKey&) = delete;
    OpenKey& operator=(const OpenKey&) = delete;
    ~OpenKey()
    {
        if (key != nullptr)
        {
            RegCloseKey(key);
        }
    }

    bool IsOpen() const
    {
        return key != nullptr;
    }

    std::vector<RegistryValue> Values() const
    {
        constexpr DWORD LongestName = 16384;
        constexpr DWORD LongestValue = 64;
        std::vector<RegistryValue> values;
        std::wstring name(LongestName, L'\0');
        for (DWORD i = 0;; ++i)
        {
            DWORD nameLength = LongestName;
            RegistryValue value{{}, 0, std::vector<uint8_t>(LongestValue)};
            DWORD size = LongestValue;
            DWORD type = 0;
            const LSTATUS status = RegEnumValueW(key, i, name.data(), &nameLength, nullptr, &type, value.bytes.data(), &size);
            if (status != ERROR_SUCCESS && status != ERROR_MORE_DATA)
            {
                return values;
            }
            // A value that is longer counts by being longer than the library reads.
            value.bytes.resize(status == ERROR_SUCCESS ? size : LongestValue);
            value.name = Utf8(name.substr(0, nameLength));
            value.type = type;
            values.push_back(std::move(value));
        }
    }

private:
    HKEY key = nullptr;
};

} // namespace

RegistrySettings ReadSettingsKey()
{
    RegistrySettings settings;
    if (const OpenKey key(KEY_WOW64_64KEY); key.IsOpen())
    {
        settings.keyReadable = true;
        settings.values = key.Values();
    }
    if (const OpenKey key(KEY_WOW64_32KEY); key.IsOpen())
    {
        for (const RegistryValue& value : key.Values())
        {
            settings.valuesOf32Bit.push_back(value.name);
        }
    }
    return settings;
}

} // namespace velox::console

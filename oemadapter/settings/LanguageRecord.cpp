#include "oemadapter/settings/LanguageRecord.h"

#include "oemadapter/settings/RegistryKey.h"

#include <limits>

namespace velox::oemadapter
{

namespace
{

constexpr const char16_t* RecordKey = u"Software\\Velox\\KeywordDetectorAdapter";
constexpr const WCHAR* ValueName = L"LastLanguage";

} // namespace

std::optional<uint16_t> ReadLastLanguage()
{
    RegistryKey key;
    RegistryValue value;
    if (key.Open(HKEY_CURRENT_USER, RecordKey, KEY_QUERY_VALUE) != ERROR_SUCCESS || key.Read(ValueName, &value) != ERROR_SUCCESS)
    {
        return std::nullopt;
    }
    const std::optional<uint32_t> number = NumberOf(value);
    if (!number || *number == 0 || *number > std::numeric_limits<uint16_t>::max())
    {
        return std::nullopt;
    }
    return static_cast<uint16_t>(*number);
}

LSTATUS WriteLastLanguage(uint16_t language)
{
    if (ReadLastLanguage() == language)
    {
        return ERROR_SUCCESS;
    }
    RegistryKey key;
    if (const LSTATUS status = key.Make(HKEY_CURRENT_USER, RecordKey, KEY_SET_VALUE); status != ERROR_SUCCESS)
    {
        return status;
    }
    return key.Write(ValueName, NumberValue(language));
}

} // namespace velox::oemadapter

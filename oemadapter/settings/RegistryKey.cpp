#include "oemadapter/settings/RegistryKey.h"

#include <algorithm>
#include <cstring>

namespace velox::oemadapter
{

RegistryValue TextValue(const WideText& text)
{
    const auto* first = reinterpret_cast<const BYTE*>(text.c_str());
    return {REG_SZ, {first, first + (text.size() + 1) * sizeof(char16_t)}};
}

RegistryValue NumberValue(uint32_t number)
{
    const auto* first = reinterpret_cast<const BYTE*>(&number);
    return {REG_DWORD, {first, first + sizeof(number)}};
}

std::optional<WideText> TextOf(const RegistryValue& value)
{
    if (value.type != REG_SZ && value.type != REG_EXPAND_SZ)
    {
        return std::nullopt;
    }
    // The registry does not see to it that a text ends with a zero, or within a letter's two bytes.
    WideText text(value.bytes.size() / sizeof(char16_t), u'\0');
    std::copy_n(value.bytes.begin(), text.size() * sizeof(char16_t), reinterpret_cast<BYTE*>(text.data()));
    text.resize(std::min(text.find(u'\0'), text.size()));
    return value.type == REG_EXPAND_SZ ? ExpandVariables(text) : text;
}

std::optional<uint32_t> NumberOf(const RegistryValue& value)
{
    uint32_t number = 0;
    if (value.type != REG_DWORD || value.bytes.size() != sizeof(number))
    {
        return std::nullopt;
    }
    std::memcpy(&number, value.bytes.data(), sizeof(number));
    return number;
}

WideText ExpandVariables(const WideText& text)
{
    // Both counts hold the terminating zero.
    WideText expanded(ExpandEnvironmentStringsW(Wide(text), nullptr, 0), u'\0');
    const DWORD size = ExpandEnvironmentStringsW(Wide(text), Wide(expanded), static_cast<DWORD>(expanded.size()));
    if (size == 0 || size > expanded.size())
    {
        return text;
    }
    expanded.resize(size - 1);
    return expanded;
}

LSTATUS RegistryKey::Open(HKEY root, const WideText& path, REGSAM access)
{
    HKEY open = nullptr;
    const LSTATUS status = RegOpenKeyExW(root, Wide(path), 0, access | KEY_WOW64_64KEY, &open);
    key.reset(status == ERROR_SUCCESS ? open : nullptr);
    return status;
}

LSTATUS RegistryKey::Make(HKEY root, const WideText& path, REGSAM access)
{
    HKEY open = nullptr;
    const LSTATUS status =
        RegCreateKeyExW(root, Wide(path), 0, nullptr, REG_OPTION_NON_VOLATILE, access | KEY_WOW64_64KEY, nullptr, &open, nullptr);
    key.reset(status == ERROR_SUCCESS ? open : nullptr);
    return status;
}

LSTATUS RegistryKey::Read(const WCHAR* name, RegistryValue* value) const
{
    constexpr std::size_t MostUsualBytes = 512;
    RegistryValue found;
    found.bytes.resize(MostUsualBytes);
    LSTATUS status = ERROR_MORE_DATA;
    while (status == ERROR_MORE_DATA)
    {
        auto size = static_cast<DWORD>(found.bytes.size());
        status = RegQueryValueExW(key.get(), name, nullptr, &found.type, found.bytes.data(), &size);
        found.bytes.resize(size);
    }
    if (status == ERROR_SUCCESS)
    {
        *value = std::move(found);
    }
    return status;
}

LSTATUS RegistryKey::Write(const WCHAR* name, const RegistryValue& value) const
{
    return RegSetValueExW(key.get(), name, 0, value.type, value.bytes.data(), static_cast<DWORD>(value.bytes.size()));
}

LSTATUS RegistryKey::Remove(const WCHAR* name) const
{
    return RegDeleteValueW(key.get(), name);
}

bool RegistryKey::IsEmpty() const
{
    DWORD subkeys = 0;
    DWORD values = 0;
    return RegQueryInfoKeyW(key.get(), nullptr, nullptr, nullptr, &subkeys, nullptr, nullptr, &values, nullptr, nullptr, nullptr,
                            nullptr) == ERROR_SUCCESS &&
           subkeys == 0 && values == 0;
}

} // namespace velox::oemadapter

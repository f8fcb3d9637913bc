#pragma once

#include "oemadapter/windows/WideText.h"

#include <windows.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <type_traits>
#include <vector>

namespace velox::oemadapter
{

/// A value as the registry holds it.
struct RegistryValue
{
    DWORD type = REG_NONE;
    std::vector<BYTE> bytes;
};

RegistryValue TextValue(const WideText& text);
RegistryValue NumberValue(uint32_t number);

/// The text up to its first zero, with the variables of a REG_EXPAND_SZ put in; nothing for a value of another type.
std::optional<WideText> TextOf(const RegistryValue& value);

/// The number of a REG_DWORD; nothing for a value of another type or length.
std::optional<uint32_t> NumberOf(const RegistryValue& value);

/// Puts the environment's values in place of %VARIABLES%; those that are not there stay as they are.
WideText ExpandVariables(const WideText& text);

/// Owns an open registry key. All keys are those of the 64-bit view.
class RegistryKey
{
public:
    /// @return ERROR_FILE_NOT_FOUND when there is no such key; what else Windows says
    LSTATUS Open(HKEY root, const WideText& path, REGSAM access);

    /// Opens the key, and makes it first when it is missing.
    LSTATUS Make(HKEY root, const WideText& path, REGSAM access);

    /// @param name  null names the key's default value
    /// @return ERROR_FILE_NOT_FOUND when there is no such value; `value` is written only on success
    LSTATUS Read(const WCHAR* name, RegistryValue* value) const;
    LSTATUS Write(const WCHAR* name, const RegistryValue& value) const;

    /// @return ERROR_FILE_NOT_FOUND when there is no such value
    LSTATUS Remove(const WCHAR* name) const;

    /// Whether there is neither a value nor a subkey in it.
    bool IsEmpty() const;

private:
    struct Close
    {
        void operator()(HKEY open) const
        {
            RegCloseKey(open);
        }
    };

    std::unique_ptr<std::remove_pointer_t<HKEY>, Close> key;
};

} // namespace velox::oemadapter

// What the process tells of itself: its module lies in C:\Program Files\Velox, %ProgramData% is the folder of temporary files,
// and its code page is Latin-1, or UTF-8.
#include "tests/oemadapter/support/Environment.native.h"
#include "tests/support/FaultInjector.h"

#include <windows.h>

#include <algorithm>
#include <filesystem>

std::optional<std::u16string> modulePath = DefaultModulePath;
CodePage codePage = CodePage::Latin1;
Expansion expansion = Expansion::Works;

namespace
{

DWORD Copy(const std::u16string& text, WCHAR* target, DWORD room)
{
    const auto size = static_cast<DWORD>(text.size() + 1);
    if (size <= room)
    {
        std::copy_n(text.c_str(), size, target);
    }
    return size;
}

/// @return the length in bytes; 0 for half of a pair, and when there is too little room
INT ToUtf8(LPCWSTR text, INT length, LPSTR target, INT room)
{
    try
    {
        const std::u16string letters(text, text + length);
        const std::u8string bytes = std::filesystem::path(letters).u8string();
        if (bytes.size() > static_cast<std::size_t>(room))
        {
            return 0;
        }
        std::ranges::copy(bytes, target);
        return static_cast<INT>(bytes.size());
    }
    catch (const std::filesystem::filesystem_error&)
    {
        return 0;
    }
}

} // namespace

BOOL WINAPI GetModuleHandleExW(DWORD flags, LPCWSTR address, HMODULE* module)
{
    const bool asExpected =
        flags == (GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT) && address != nullptr;
    *module = nullptr;
    return asExpected && modulePath ? TRUE : FALSE;
}

DWORD WINAPI GetModuleFileNameW(HMODULE, LPWSTR path, DWORD room)
{
    return Copy(*modulePath, path, room) - 1;
}

DWORD WINAPI ExpandEnvironmentStringsW(LPCWSTR text, LPWSTR target, DWORD room)
{
    const FaultPause pause;
    constexpr std::u16string_view Variable = u"%ProgramData%";
    std::u16string expanded(reinterpret_cast<const char16_t*>(text));
    if (const std::size_t found = expanded.find(Variable); found != std::u16string::npos)
    {
        expanded.replace(found, Variable.size(), std::filesystem::temp_directory_path().u16string());
    }
    if (expansion == Expansion::Grows && target != nullptr)
    {
        expanded += u"!";
    }
    return expansion == Expansion::Fails ? 0 : Copy(expanded, target, target == nullptr ? 0 : room);
}

UINT WINAPI GetACP()
{
    return static_cast<UINT>(codePage);
}

INT WINAPI MultiByteToWideChar(UINT, DWORD, LPCSTR text, INT length, LPWSTR target, INT room)
{
    const INT count = std::min(length, room);
    for (INT i = 0; i < count; ++i)
    {
        target[i] = static_cast<unsigned char>(text[i]);
    }
    return count;
}

INT WINAPI WideCharToMultiByte(UINT, DWORD flags, LPCWSTR text, INT length, LPSTR target, INT room, LPCSTR, LPBOOL usedDefault)
{
    if (codePage == CodePage::Utf8)
    {
        // As Windows: the question whether a letter is unknown is refused.
        return flags == WC_ERR_INVALID_CHARS && usedDefault == nullptr ? ToUtf8(text, length, target, room) : 0;
    }
    if (flags != WC_NO_BEST_FIT_CHARS)
    {
        return 0; // a letter must not become another one that looks like it
    }
    for (INT i = 0; i < std::min(length, room); ++i)
    {
        const bool known = text[i] < 0x100;
        target[i] = known ? static_cast<char>(text[i]) : '?';
        *usedDefault = known ? *usedDefault : TRUE;
    }
    return std::min(length, room);
}

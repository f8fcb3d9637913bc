#include "oemadapter/settings/ModulePath.h"

namespace velox::oemadapter
{

namespace
{

/// More letters than any path has.
constexpr std::size_t MostLetters = 0x8000;

/// Its address lies in the module.
const int Here = 0;

} // namespace

WideText ModulePath()
{
    HMODULE module = nullptr;
    if (GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                           static_cast<const WCHAR*>(static_cast<const void*>(&Here)), &module) == FALSE)
    {
        return {};
    }
    WideText path(MostLetters, u'\0');
    path.resize(GetModuleFileNameW(module, Wide(path), static_cast<DWORD>(path.size())));
    return path;
}

} // namespace velox::oemadapter

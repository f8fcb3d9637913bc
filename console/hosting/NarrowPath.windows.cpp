#include "console/hosting/NarrowPath.h"

#include <windows.h>

namespace velox::console
{

std::optional<std::string> NarrowPath(const std::filesystem::path& path)
{
    const std::wstring wide = path.wstring();
    BOOL unknown = FALSE;
    const auto length = static_cast<int>(wide.size());
    std::string narrow(wide.size() * 4, '\0');
    const UINT codePage = GetACP();
    const int size =
        WideCharToMultiByte(codePage, codePage == CP_UTF8 ? 0 : WC_NO_BEST_FIT_CHARS, wide.data(), length, narrow.data(),
                            static_cast<int>(narrow.size()), nullptr, codePage == CP_UTF8 ? nullptr : &unknown);
    if (unknown != FALSE || (size == 0 && length != 0))
    {
        return std::nullopt;
    }
    narrow.resize(static_cast<std::size_t>(size));
    return narrow;
}

} // namespace velox::console

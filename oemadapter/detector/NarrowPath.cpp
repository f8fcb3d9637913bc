#include "oemadapter/detector/NarrowPath.h"

namespace velox::oemadapter
{

std::optional<std::string> NarrowPath(const WideText& path)
{
    constexpr std::size_t MostBytesPerLetter = 4;
    std::string narrow(path.size() * MostBytesPerLetter, '\0');
    // UTF-8 has every letter, and refuses the question.
    const bool isUtf8 = GetACP() == CP_UTF8;
    BOOL isUnknown = FALSE;
    const int size = WideCharToMultiByte(CP_ACP, isUtf8 ? WC_ERR_INVALID_CHARS : WC_NO_BEST_FIT_CHARS, Wide(path),
                                         static_cast<int>(path.size()), narrow.data(), static_cast<int>(narrow.size()), nullptr,
                                         isUtf8 ? nullptr : &isUnknown);
    if (size <= 0 || isUnknown != FALSE)
    {
        return std::nullopt;
    }
    narrow.resize(static_cast<std::size_t>(size));
    return narrow;
}

} // namespace velox::oemadapter

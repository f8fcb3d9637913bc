#pragma once

#include <windows.h>

#include <string>

namespace velox::oemadapter
{

/// Text as Windows takes it. Not std::wstring: natively a WCHAR has 16 bits and the C++ runtime's wchar_t 32.
using WideText = std::u16string;

static_assert(sizeof(WCHAR) == sizeof(char16_t));

inline const WCHAR* Wide(const WideText& text)
{
    return reinterpret_cast<const WCHAR*>(text.c_str());
}

inline WCHAR* Wide(WideText& text)
{
    return reinterpret_cast<WCHAR*>(text.data());
}

} // namespace velox::oemadapter

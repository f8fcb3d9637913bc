#pragma once

#include <windows.h>

/// What Windows expects of training, arming and parsing that went wrong inside: 0x8007001F,
/// HRESULT_FROM_WIN32(ERROR_GEN_FAILURE).
inline constexpr auto ProcessingFailed = static_cast<HRESULT>(0x8007001FU);

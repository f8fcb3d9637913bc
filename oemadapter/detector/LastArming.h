#pragma once

#include <windows.h>

#include <cstdint>

namespace velox::oemadapter
{

/// What this process armed last, whichever object it came through.
struct LastArming
{
    uint16_t language = 0; ///< 0: nothing was armed yet
    ULONG userId = 0;      ///< second generation: the selector's; else 0
    BOOL armed = FALSE;    ///< second generation: the selector's; else FALSE
};

} // namespace velox::oemadapter

#pragma once

#include "oemadapter/windows/SoundDetectorPattern.h"
#include "oemadapter/windows/TaskMemory.h"

#include <cstdint>

namespace velox::oemadapter
{

/// Puts nothing into the outputs that a method was given.
/// @return false, with nothing written, when one of them is null
template <typename... Outputs>
bool Clear(Outputs*... outputs)
{
    const bool given = ((outputs != nullptr) && ...);
    if (given)
    {
        ((*outputs = Outputs{}), ...);
    }
    return given;
}

/// Hands an arming pattern over as Windows sees it.
inline SOUNDDETECTOR_PATTERNHEADER* AsPattern(TaskMemory<uint8_t> block)
{
    return reinterpret_cast<SOUNDDETECTOR_PATTERNHEADER*>(block.release());
}

} // namespace velox::oemadapter

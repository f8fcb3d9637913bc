#pragma once

#include <windows.h>

#include <cstddef>

/// What every block begins with that goes to the audio driver's sound detector, or comes from it. The detector's own bytes
/// follow.
struct SOUNDDETECTOR_PATTERNHEADER
{
    ULONG Size;       ///< length of the whole block in bytes, this header included
    GUID PatternType; ///< the detector that the block is for
};

static_assert(sizeof(SOUNDDETECTOR_PATTERNHEADER) == 20);
static_assert(offsetof(SOUNDDETECTOR_PATTERNHEADER, PatternType) == 4);

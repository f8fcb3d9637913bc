#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

#pragma pack(push, 1)
/// The block that the firmware reports when it fires. Integers are little-endian unless said otherwise. A block may be longer
/// than this; what follows is not read.
struct DetectionResult
{
    uint32_t Size;    ///< length of the whole block in bytes, at least DetectionResultMinSize
    GUID PatternType; ///< the detector's GUID, as in the arming pattern
    uint8_t NotRead20[8];
    uint64_t KeywordStart; ///< where the keyword starts; handed on as it is
    uint64_t KeywordEnd;   ///< where the keyword ends; handed on as it is
    uint8_t NotRead44[4];
    uint16_t KeywordIdFw; ///< the firmware's keyword id; 1 is the supported keyword
    uint8_t NotRead50[2];
    uint8_t KpdScore[2]; ///< key-phrase score in the firmware's own scale, 16 bits, big-endian
    uint8_t NotRead54[6];
};
#pragma pack(pop)

/// Least length of a detection result block, in bytes.
inline constexpr uint32_t DetectionResultMinSize = 60;

// The firmware writes this block: the offsets are binding.
static_assert(sizeof(DetectionResult) == DetectionResultMinSize);
static_assert(offsetof(DetectionResult, Size) == 0);
static_assert(offsetof(DetectionResult, PatternType) == 4);
static_assert(offsetof(DetectionResult, KeywordStart) == 28);
static_assert(offsetof(DetectionResult, KeywordEnd) == 36);
static_assert(offsetof(DetectionResult, KeywordIdFw) == 48);
static_assert(offsetof(DetectionResult, KpdScore) == 52);

#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

/// Head of the block that arms the audio DSP; ModelSize bytes of model follow it. Little-endian, as is every platform that the
/// library runs on.
struct ArmingPattern
{
    uint32_t Size;         ///< length of the whole block in bytes: this head and the model
    GUID PatternType;      ///< the detector's GUID
    uint32_t Signature;    ///< ArmingPatternSignature
    uint32_t KpdThreshold; ///< Q8, the bits of the signed sensitivity
    uint32_t Limit;        ///< ArmingPatternLimit
    uint32_t Reserved1;    ///< 0
    uint32_t Reserved2;    ///< 0
    uint32_t ModelSize;    ///< length of the model in bytes
};

inline constexpr uint32_t ArmingPatternSignature = 0xAA550001;
inline constexpr uint32_t ArmingPatternLimit = 0x7FFFFFFF;

// The firmware reads this block as it stands: the offsets are binding.
static_assert(sizeof(ArmingPattern) == 44);
static_assert(offsetof(ArmingPattern, Size) == 0);
static_assert(offsetof(ArmingPattern, PatternType) == 4);
static_assert(offsetof(ArmingPattern, Signature) == 20);
static_assert(offsetof(ArmingPattern, KpdThreshold) == 24);
static_assert(offsetof(ArmingPattern, Limit) == 28);
static_assert(offsetof(ArmingPattern, Reserved1) == 32);
static_assert(offsetof(ArmingPattern, Reserved2) == 36);
static_assert(offsetof(ArmingPattern, ModelSize) == 40);

#pragma once

#include <cstddef>
#include <cstdint>

namespace velox::firmware
{

// Where the fields of both firmware blocks lie, and what stands in them (docs/firmware-blocks.md). Offsets and lengths are bytes;
// integers are little-endian unless said otherwise.

/// What both blocks begin with.
struct BlockHead
{
    static constexpr std::size_t SizeOffset = 0;        ///< 4 bytes: the length of the whole block
    static constexpr std::size_t PatternTypeOffset = 4; ///< 16 bytes: the detector's GUID
    static constexpr std::size_t Length = 20;
};

/// The block that arms the firmware: a head, then the model.
struct PatternLayout : BlockHead
{
    static constexpr std::size_t SignatureOffset = 20; ///< 4 bytes, as those that follow
    static constexpr std::size_t ThresholdOffset = 24; ///< Q8, signed
    static constexpr std::size_t LimitOffset = 28;
    static constexpr std::size_t Reserved1Offset = 32; ///< 0
    static constexpr std::size_t Reserved2Offset = 36; ///< 0
    static constexpr std::size_t ModelSizeOffset = 40;
    static constexpr std::size_t ModelOffset = 44; ///< as long as the head

    static constexpr uint32_t Signature = 0xAA550001;
    static constexpr uint32_t Limit = 0x7FFFFFFF;
};

/// The block that the firmware reports a detection with. What lies between its fields, and behind Length, nobody reads.
struct ResultLayout : BlockHead
{
    static constexpr std::size_t KeywordStartOffset = 28; ///< 8 bytes: ticks of the performance counter
    static constexpr std::size_t KeywordEndOffset = 36;   ///< 8 bytes
    static constexpr std::size_t KeywordIdOffset = 48;    ///< 2 bytes
    static constexpr std::size_t ScoreOffset = 52;        ///< 2 bytes, big-endian, Q8
    static constexpr std::size_t Length = 60;             ///< at least

    static constexpr uint16_t Keyword = 1; ///< the only keyword id
};

} // namespace velox::firmware

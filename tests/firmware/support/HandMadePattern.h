#pragma once

#include "engine/models/PhraseModel.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

/// An arming pattern put together byte by byte, as docs/firmware-blocks.md describes it.
namespace HandMadePattern
{

using Bytes = std::vector<uint8_t>;

/// {00112233-4455-6677-8899-AABBCCDDEEFF}
inline constexpr std::array<uint8_t, 16> Detector{0x33, 0x22, 0x11, 0x00, 0x55, 0x44, 0x77, 0x66,
                                                  0x88, 0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF};

inline constexpr std::size_t HeadSize = 44;

inline void Put(uint32_t number, std::size_t offset, Bytes* block)
{
    (*block)[offset] = static_cast<uint8_t>(number);
    (*block)[offset + 1] = static_cast<uint8_t>(number >> 8U);
    (*block)[offset + 2] = static_cast<uint8_t>(number >> 16U);
    (*block)[offset + 3] = static_cast<uint8_t>(number >> 24U);
}

/// @param threshold  Q8
inline Bytes Make(const Bytes& model, uint32_t threshold)
{
    Bytes block(HeadSize + model.size(), 0);
    std::copy(model.begin(), model.end(), block.begin() + HeadSize);
    Put(static_cast<uint32_t>(block.size()), 0, &block);
    std::copy(Detector.begin(), Detector.end(), block.begin() + 4);
    Put(0xAA550001, 20, &block);
    Put(threshold, 24, &block);
    Put(0x7FFFFFFF, 28, &block);
    Put(static_cast<uint32_t>(model.size()), 40, &block);
    return block;
}

inline Bytes Make(const velox::engine::PhraseModel& model, uint32_t threshold)
{
    return Make(velox::engine::WritePhraseModel(model), threshold);
}

} // namespace HandMadePattern

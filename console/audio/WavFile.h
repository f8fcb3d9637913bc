#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace velox::console
{

/// The bytes of a WAV file: 16 kHz, mono, 16 bits.
/// @param samples  in [-1, 1]; what lies beyond is clipped
std::vector<uint8_t> WavBytes(std::span<const float> samples);

} // namespace velox::console

#pragma once

#include <cstddef>
#include <cstdint>

/// Converts as many of the samples as the processor takes several at once, from the first on, with the same result as
/// ConvertSamplesPlain.
/// @param samples  `count` 32-bit floats, of any alignment
/// @param frame    receives the samples; must not overlap the input
/// @return how many were converted; 0 on a processor without SSE2
std::size_t ConvertManyAtOnce(const uint8_t* samples, std::size_t count, int16_t* frame);

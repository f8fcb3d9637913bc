#pragma once

#include <cstddef>
#include <cstdint>

/// Converts float samples to the engine's signed 16-bit samples: clamps to [-1, 1] (a NaN gives -1), multiplies by 32767 and
/// rounds half away from zero, all in 32-bit float.
/// @param samples  `count` 32-bit floats, of any alignment
/// @param frame    receives `count` samples; must not overlap the input
void ConvertSamples(const uint8_t* samples, std::size_t count, int16_t* frame);

/// The same, sample by sample: the rest of a frame, processors without SSE2, and the reference of ConvertSamples.
void ConvertSamplesPlain(const uint8_t* samples, std::size_t count, int16_t* frame);

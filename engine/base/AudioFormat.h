#pragma once

#include <cstddef>

/// The one audio format of the engine, and how it is cut into frames.
namespace velox::engine
{

inline constexpr std::size_t SampleRate = 16000;
/// Samples in a frame that a caller feeds, and between two spectra: 10 ms.
inline constexpr std::size_t FrameSize = 160;
/// Samples under the window of one spectrum: 25 ms.
inline constexpr std::size_t WindowSize = 400;
inline constexpr std::size_t FftSize = 512;
inline constexpr std::size_t MelChannels = 40;
inline constexpr double FramesPerSecond = static_cast<double>(SampleRate) / FrameSize;

} // namespace velox::engine

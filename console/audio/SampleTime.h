#pragma once

#include <cstdint>

namespace velox::console
{

/// Of all audio, once it is read.
inline constexpr int SamplesPerSecond = 16000;

/// Where a sample stands, or how long so many of them last.
inline double Seconds(int64_t sample)
{
    return static_cast<double>(sample) / SamplesPerSecond;
}

} // namespace velox::console

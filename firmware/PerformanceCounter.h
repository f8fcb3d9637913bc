#pragma once

#include <cstdint>

namespace velox::firmware
{

/// The computer's performance counter, in which the firmware tells positions: 10 MHz, so a tick is 100 ns. It is another clock
/// than that of the audio.
struct PerformanceCounter
{
    uint64_t offset = 0;  ///< ticks when the first sample is heard
    int32_t driftPpm = 0; ///< how much faster than the audio's clock it runs, in millionths; above -1000000

    /// What the counter shows when a sample is heard, rounded to the nearest tick; it wraps as a 64-bit counter does.
    ///
    /// @param sample  from the beginning, at least 0, at 16 kHz: 625 ticks each
    uint64_t At(int64_t sample) const
    {
        constexpr int64_t Million = 1'000'000;
        constexpr uint64_t Divisor = Million / 625;
        const auto scaled = static_cast<uint64_t>(sample) * static_cast<uint64_t>(Million + driftPpm);
        return offset + (scaled + Divisor / 2) / Divisor;
    }
};

} // namespace velox::firmware

#pragma once

#include "engine/base/AudioFormat.h"

#include <array>
#include <memory>

struct kiss_fftr_state;

namespace velox::engine
{

/// Squared magnitudes of one Hamming-windowed stretch of audio. The transform is kissfft's.
class PowerSpectrum
{
public:
    static constexpr std::size_t Bins = FftSize / 2 + 1;

    PowerSpectrum();
    ~PowerSpectrum();
    PowerSpectrum(const PowerSpectrum&) = delete;
    PowerSpectrum& operator=(const PowerSpectrum&) = delete;

    /// @param samples  WindowSize samples
    /// @param power    receives Bins values
    void Compute(const float* samples, float* power);

private:
    std::unique_ptr<kiss_fftr_state, void (*)(void*)> transform;
    std::array<float, WindowSize> window{};
    std::array<float, FftSize> input{};
};

} // namespace velox::engine

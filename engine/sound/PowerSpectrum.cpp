#include "engine/sound/PowerSpectrum.h"

#include <kiss_fftr.h>

#include <cmath>
#include <new>
#include <numbers>

namespace velox::engine
{

PowerSpectrum::PowerSpectrum() : transform(kiss_fftr_alloc(FftSize, 0, nullptr, nullptr), &kiss_fftr_free)
{
    if (transform == nullptr)
    {
        throw std::bad_alloc();
    }
    for (std::size_t i = 0; i < WindowSize; ++i)
    {
        const double phase = 2.0 * std::numbers::pi * static_cast<double>(i) / (WindowSize - 1);
        window[i] = static_cast<float>(0.54 - 0.46 * std::cos(phase));
    }
}

PowerSpectrum::~PowerSpectrum() = default;

void PowerSpectrum::Compute(const float* samples, float* power)
{
    for (std::size_t i = 0; i < WindowSize; ++i)
    {
        input[i] = samples[i] * window[i];
    }
    std::array<kiss_fft_cpx, Bins> bins;
    kiss_fftr(transform.get(), input.data(), bins.data());
    for (std::size_t i = 0; i < Bins; ++i)
    {
        power[i] = bins[i].r * bins[i].r + bins[i].i * bins[i].i;
    }
}

} // namespace velox::engine

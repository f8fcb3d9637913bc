#pragma once

#include <cmath>
#include <cstdint>

/// The engine's sample for a recording's sample, the long way. Each step is computed in double and rounded to float once; double
/// has digits enough for that to be the float's own result.
inline int16_t ExpectedSample(float sample)
{
    float clamped = sample;
    if (std::isnan(sample) || sample < -1.0F)
    {
        clamped = -1.0F;
    }
    else if (sample > 1.0F)
    {
        clamped = 1.0F;
    }
    const auto scaled = static_cast<float>(static_cast<double>(clamped) * 32767.0);
    const auto shifted =
        static_cast<float>(scaled > 0.0F ? static_cast<double>(scaled) + 0.5 : static_cast<double>(scaled) - 0.5);
    return static_cast<int16_t>(std::trunc(shifted));
}

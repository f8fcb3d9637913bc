#pragma once

#include <windows.h>

#include <mmreg.h>

#include <algorithm>
#include <cstdint>
#include <vector>

/// A recording of the second generation, in memory of its own length: a format, and its samples at once behind it.
class PcmTake
{
public:
    explicit PcmTake(const std::vector<int16_t>& samples) : bytes(sizeof(WAVEFORMATEX) + samples.size() * sizeof(int16_t))
    {
        const auto* first = reinterpret_cast<const BYTE*>(samples.data());
        std::copy_n(first, samples.size() * sizeof(int16_t), bytes.data() + sizeof(WAVEFORMATEX));
        *Format() = {WAVE_FORMAT_PCM, 1, 16000, 32000, 2, 16, static_cast<WORD>(samples.size() * sizeof(int16_t))};
    }

    WAVEFORMATEX* Format()
    {
        return reinterpret_cast<WAVEFORMATEX*>(bytes.data());
    }

private:
    std::vector<BYTE> bytes;
};

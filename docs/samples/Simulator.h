#pragma once

#include "firmware/DspSimulator.h"

#include <functional>
#include <span>
#include <stdexcept>
#include <string>

/// Lets the simulated firmware hear audio, armed again after each detection as the system does.
///
/// @param pattern  as BuildArmingPatternData returns it
/// @param audio    mono at 16 kHz
/// @param deliver  gets each result block; ParseDetectionResultData reads it
inline void HearWithPattern(const velox::firmware::DetectorId& detector, std::span<const uint8_t> pattern,
                            std::span<const float> audio, const std::function<void(std::span<const uint8_t>)>& deliver)
{
    velox::firmware::DspSimulator dsp(detector);
    if (const auto refusal = dsp.SetPattern(pattern))
    {
        throw std::runtime_error(std::string(velox::firmware::TextOf(*refusal).sentence));
    }
    dsp.Arm();
    while (!audio.empty())
    {
        // Stops at a detection; what was not heard yet stays in `audio`.
        if (const auto result = dsp.Hear(&audio))
        {
            deliver(result->Bytes());
            dsp.Arm();
        }
    }
}

#pragma once

#include "engine/sound/MelFilterbank.h"
#include "engine/sound/PowerSpectrum.h"

#include <span>
#include <vector>

namespace velox::engine
{

/// Turns audio into log-mel frames: pre-emphasis, window, power spectrum, mel filters. Fed frame by frame; its state is one
/// window of audio.
class FrontEnd
{
public:
    /// Pushes after which the first spectrum comes: the window must be full.
    static constexpr std::size_t FirstFrame = (WindowSize + FrameSize - 1) / FrameSize;

    explicit FrontEnd(double warp = 1.0) : filterbank(warp)
    {
    }

    /// @param samples  FrameSize samples in [-1, 1]
    /// @return false while the first window is not full; else `*logMel` holds the frame whose window ends with these samples
    bool Push(const float* samples, MelFrame* logMel);

private:
    static constexpr float PreEmphasis = 0.97F;

    MelFilterbank filterbank;
    PowerSpectrum spectrum;
    std::array<float, WindowSize> history{};
    float lastSample = 0.0F;
    std::size_t pushes = 0;
};

/// All log-mel frames of a recording; what is no full frame at its end is left out.
std::vector<MelFrame> LogMelFrames(std::span<const float> recording);

} // namespace velox::engine

#pragma once

#include "engine/base/AudioFormat.h"

#include <array>
#include <vector>

namespace velox::engine
{

/// Natural logarithms of the energies of the mel channels of one frame.
using MelFrame = std::array<float, MelChannels>;

/// Triangular filters on the mel scale, mel = 1127 ln(1 + f / 700), from 80 to 7200 Hz (Davis and Mermelstein, "Comparison of
/// parametric representations for monosyllabic word recognition", 1980).
class MelFilterbank
{
public:
    /// @param warp  factor of the channels' frequencies, 1 for none: a longer or shorter vocal tract in training. Towards 7200 Hz
    ///              it goes back to none, so that no channel leaves the band (piecewise linear: Lee and Rose, "A frequency
    ///              warping approach to speaker normalization", 1998)
    explicit MelFilterbank(double warp = 1.0);

    /// @param power  FftSize / 2 + 1 squared magnitudes
    void Apply(const float* power, MelFrame* logMel) const;

    /// Frequency at which a channel's triangle has its tip, in Hz.
    double CentreFrequency(std::size_t channel) const
    {
        return centres[channel];
    }

private:
    struct Triangle
    {
        std::size_t firstBin = 0;
        std::vector<float> weights;
    };

    std::array<Triangle, MelChannels> triangles;
    std::array<double, MelChannels> centres{};
};

} // namespace velox::engine

#pragma once

#include "engine/base/RandomStream.h"

#include <Eigen/Core>

namespace velox::engine
{

/// Makes crops of log-mel features harder while a network learns: a band of channels is zeroed on half of them (Park et al.,
/// "SpecAugment", 2019), and a smooth channel offset is added to some, as another microphone would.
class SpectrogramMasking
{
public:
    static constexpr double BandShare = 0.5;
    static constexpr int MostBandChannels = 8;
    static constexpr double OffsetShare = 0.4;
    static constexpr double OffsetDeviation = 0.35;

    /// @param features  channels x frames, normalised: zero is a channel's mean
    static void Apply(RandomStream* random, Eigen::MatrixXf* features);

    /// A sum of the slowest cosines over the channels; each channel's deviation over many draws is OffsetDeviation.
    static Eigen::VectorXf SmoothOffset(Eigen::Index channels, RandomStream* random);
};

} // namespace velox::engine

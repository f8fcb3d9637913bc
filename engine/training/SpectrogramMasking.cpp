#include "engine/training/SpectrogramMasking.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace velox::engine
{

void SpectrogramMasking::Apply(RandomStream* random, Eigen::MatrixXf* features)
{
    const Eigen::Index channels = features->rows();
    if (random->Uniform() < OffsetShare)
    {
        features->colwise() += SmoothOffset(channels, random);
    }
    if (random->Uniform() < BandShare)
    {
        const Eigen::Index width = random->Integer(1, std::min<Eigen::Index>(MostBandChannels, channels));
        features->middleRows(random->Integer(0, channels - width), width).setZero();
    }
}

Eigen::VectorXf SpectrogramMasking::SmoothOffset(Eigen::Index channels, RandomStream* random)
{
    constexpr int Cosines = 3;
    // Over channels and draws, a constant has the mean square 1 and each cosine 1/2.
    const double deviation = OffsetDeviation / std::sqrt(1.0 + 0.5 * Cosines);
    Eigen::VectorXf offset = Eigen::VectorXf::Constant(channels, static_cast<float>(deviation * random->Normal()));
    for (int k = 1; k <= Cosines; ++k)
    {
        const double size = deviation * random->Normal();
        for (Eigen::Index i = 0; i < channels; ++i)
        {
            const double place = (static_cast<double>(i) + 0.5) / static_cast<double>(channels);
            offset[i] += static_cast<float>(size * std::cos(std::numbers::pi * k * place));
        }
    }
    return offset;
}

} // namespace velox::engine

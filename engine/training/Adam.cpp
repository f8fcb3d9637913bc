#include "engine/training/Adam.h"

#include <cmath>

namespace velox::engine
{

Adam::Adam(Eigen::Index parameters) : means(Eigen::ArrayXf::Zero(parameters)), squares(Eigen::ArrayXf::Zero(parameters))
{
}

void Adam::Step(const Eigen::VectorXf& gradient, double rate, Eigen::VectorXf* parameters)
{
    constexpr auto MeanShare = static_cast<float>(1.0 - MeanDecay);
    constexpr auto SquareShare = static_cast<float>(1.0 - SquareDecay);
    means += MeanShare * (gradient.array() - means);
    squares += SquareShare * (gradient.array().square() - squares);

    meanBias *= MeanDecay;
    squareBias *= SquareDecay;
    const auto step = static_cast<float>(rate / (1.0 - meanBias));
    const auto scale = static_cast<float>(1.0 / std::sqrt(1.0 - squareBias));
    constexpr auto Least = static_cast<float>(LeastRoot);
    parameters->array() -= step * means / (scale * squares.sqrt() + Least);
}

} // namespace velox::engine

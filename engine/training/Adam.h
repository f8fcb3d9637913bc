#pragma once

#include <Eigen/Core>

namespace velox::engine
{

/// Steps along the gradient, each parameter at its own pace (Kingma and Ba, "Adam: a method for stochastic optimization", 2014).
class Adam
{
public:
    explicit Adam(Eigen::Index parameters);

    /// @param gradient    of the loss, as many values as there are parameters
    void Step(const Eigen::VectorXf& gradient, double rate, Eigen::VectorXf* parameters);

private:
    static constexpr double MeanDecay = 0.9;
    static constexpr double SquareDecay = 0.999;
    static constexpr double LeastRoot = 1e-8;

    Eigen::ArrayXf means;
    Eigen::ArrayXf squares;
    double meanBias = 1.0; ///< share of the mean that its start at 0 still holds
    double squareBias = 1.0;
};

} // namespace velox::engine

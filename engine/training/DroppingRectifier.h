#pragma once

#include "engine/base/RandomStream.h"

#include <Eigen/Core>

namespace velox::engine
{

/// A rectifier whose outputs are left out at random in training, the others scaled up so that the mean stays (Srivastava 2014).
class DroppingRectifier
{
public:
    /// @param share  of the outputs left out, at least 0, below 1; taken in steps of 2^-16
    explicit DroppingRectifier(double share);

    void Forward(RandomStream* random, Eigen::MatrixXf* values) const;

    /// Turns the gradient of the outputs into the one of the inputs.
    ///
    /// @param outputs  what Forward left
    void Backward(const Eigen::MatrixXf& outputs, Eigen::MatrixXf* gradient) const;

private:
    uint64_t threshold;
    float scale;
};

} // namespace velox::engine

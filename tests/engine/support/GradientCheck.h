#pragma once

#include "engine/base/RandomStream.h"

#include <Eigen/Core>

#include <algorithm>
#include <cmath>

/// Normally distributed entries.
inline Eigen::MatrixXf RandomMatrix(Eigen::Index rows, Eigen::Index columns, velox::engine::RandomStream* random)
{
    return Eigen::MatrixXf::NullaryExpr(rows, columns, [random] { return static_cast<float>(random->Normal()); });
}

/// The largest difference between a gradient and the slope between the losses at both sides of each value.
///
/// @param values  that the loss depends on; left as they were
/// @param loss    computes it from the current values
/// @param step    to either side; small enough for the loss to be nearly straight, large enough for single precision
template <typename Gradient, typename Values, typename Loss>
double LargestGradientError(const Gradient& gradient, Values* values, const Loss& loss, float step = 0.01F)
{
    double largest = 0.0;
    for (Eigen::Index i = 0; i < values->size(); ++i)
    {
        float& value = values->data()[i];
        const float kept = value;
        value = kept + step;
        const double above = loss();
        value = kept - step;
        const double below = loss();
        value = kept;
        const double slope = (above - below) / (2.0 * static_cast<double>(step));
        largest = std::max(largest, std::abs(slope - static_cast<double>(gradient.data()[i])));
    }
    return largest;
}

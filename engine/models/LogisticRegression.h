#pragma once

#include <Eigen/Core>

namespace velox::engine
{

/// A linear classifier: the log odds that something is of the positive class (Hastie, Tibshirani and Friedman, "The Elements of
/// Statistical Learning", section 4.4).
struct LogisticRegression
{
    Eigen::VectorXf weights;
    float bias = 0.0F;

    float LogOdds(const Eigen::Ref<const Eigen::VectorXf>& features) const
    {
        return weights.dot(features) + bias;
    }
};

} // namespace velox::engine

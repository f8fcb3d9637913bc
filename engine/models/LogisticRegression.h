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

/// Fits by iteratively reweighted least squares with a ridge penalty on standardised features; both classes count the same.
/// @param positive  features x examples, at least one
/// @param negative  features x examples, at least one
LogisticRegression FitLogisticRegression(const Eigen::MatrixXf& positive, const Eigen::MatrixXf& negative, float ridge = 0.01F);

} // namespace velox::engine

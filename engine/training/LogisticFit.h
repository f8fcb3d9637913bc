#pragma once

#include "engine/models/LogisticRegression.h"

namespace velox::engine
{

/// Fits by iteratively reweighted least squares with a ridge penalty on standardised features; both classes count the same.
/// @param positive  features x examples, at least one
/// @param negative  features x examples, at least one
LogisticRegression FitLogisticRegression(const Eigen::MatrixXf& positive, const Eigen::MatrixXf& negative, float ridge = 0.0003F);

} // namespace velox::engine

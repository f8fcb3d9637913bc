#pragma once

#include "engine/models/LogisticRegression.h"

#include <vector>

namespace velox::engine
{

/// Examples of one kind.
struct ExampleGroup
{
    Eigen::MatrixXf features; ///< features x examples, at least one
    bool positive = false;
    double share = 0.0; ///< what they count for together, however many they are; those of all groups add up to 1
};

/// Fits by iteratively reweighted least squares with a ridge penalty on standardised features.
/// @param groups  at least one of each class
LogisticRegression FitLogisticRegression(const std::vector<ExampleGroup>& groups, float ridge = 0.003F);

} // namespace velox::engine

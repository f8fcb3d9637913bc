#pragma once

#include <Eigen/Core>

#include <vector>

namespace velox::engine
{

/// Loss of a batch's outputs against their labels, a part of each label shared out equally among all classes (label smoothing:
/// Szegedy 2016).
///
/// @param outputs    classes x columns, before the softmax; becomes the gradient of `scale` times the sum of the columns' losses
/// @param labels     class of each column
/// @param smoothing  the part that is shared out, 0 to 1
/// @return that scaled sum of losses
double SmoothedCrossEntropy(const std::vector<int>& labels, float smoothing, float scale, Eigen::MatrixXf* outputs);

} // namespace velox::engine

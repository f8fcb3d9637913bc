#pragma once

#include <Eigen/Core>

namespace velox::engine
{

/// A convolution over the columns of a matrix as matrix products without copies: output column i is the sum over the taps k of
/// weights k times input column i + k * stride. The weights of the taps stand side by side, the oldest first; their number
/// follows from the shapes.
///
/// @param output  is resized to outputs x (input columns - (taps - 1) * stride)
void Convolve(const Eigen::Ref<const Eigen::MatrixXf>& weights, Eigen::Index stride, const Eigen::MatrixXf& input,
              Eigen::MatrixXf* output);

/// The gradient of the weights, given that of the output. `weightGradient` is overwritten.
void WeightGradient(const Eigen::MatrixXf& outputGradient, Eigen::Index stride, const Eigen::MatrixXf& input,
                    Eigen::Ref<Eigen::MatrixXf> weightGradient);

/// The gradient of the input, given that of the output.
///
/// @param inputGradient  has the input's size; overwritten
void InputGradient(const Eigen::Ref<const Eigen::MatrixXf>& weights, Eigen::Index stride, const Eigen::MatrixXf& outputGradient,
                   Eigen::MatrixXf* inputGradient);

} // namespace velox::engine

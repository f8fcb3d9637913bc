#pragma once

#include <Eigen/Core>

namespace velox::engine
{

/// Scales the rows of a batch to mean 0 and variance 1, then by a learned gain and shift (Ioffe and Szegedy, "Batch
/// normalization: accelerating deep network training by reducing internal covariate shift", 2015).
class BatchNormalization
{
public:
    /// Added to a variance, against division by zero.
    static constexpr float LeastVariance = 1e-5F;

    using Parameters = Eigen::Ref<const Eigen::VectorXf>;

    void Forward(const Parameters& gain, const Parameters& shift, Eigen::MatrixXf* values);

    /// Turns the gradient of the outputs of the last Forward into the one of its inputs.
    void Backward(const Parameters& gain, Eigen::MatrixXf* gradient, Eigen::Ref<Eigen::VectorXf> gainGradient,
                  Eigen::Ref<Eigen::VectorXf> shiftGradient) const;

    /// Of the last batch's rows.
    const Eigen::VectorXf& Mean() const
    {
        return mean;
    }
    const Eigen::VectorXf& Variance() const
    {
        return variance;
    }

private:
    Eigen::MatrixXf normalized;
    Eigen::VectorXf mean;
    Eigen::VectorXf variance;
    Eigen::VectorXf inverseDeviation;
};

} // namespace velox::engine

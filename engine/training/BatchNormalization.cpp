#include "engine/training/BatchNormalization.h"

namespace velox::engine
{

// The loops below go column by column, as the values lie in memory.

void BatchNormalization::Forward(const Parameters& gain, const Parameters& shift, Eigen::MatrixXf* values)
{
    const Eigen::Index columns = values->cols();
    const float share = 1.0F / static_cast<float>(columns);
    mean.setZero(values->rows());
    for (Eigen::Index i = 0; i < columns; ++i)
    {
        mean += values->col(i);
    }
    mean *= share;

    normalized.resize(values->rows(), columns);
    variance.setZero(values->rows());
    for (Eigen::Index i = 0; i < columns; ++i)
    {
        normalized.col(i) = values->col(i) - mean;
        variance.array() += normalized.col(i).array().square();
    }
    variance *= share;

    inverseDeviation = (variance.array() + LeastVariance).rsqrt();
    for (Eigen::Index i = 0; i < columns; ++i)
    {
        normalized.col(i).array() *= inverseDeviation.array();
        values->col(i) = normalized.col(i).cwiseProduct(gain) + shift;
    }
}

void BatchNormalization::Backward(const Parameters& gain, Eigen::MatrixXf* gradient, Eigen::Ref<Eigen::VectorXf> gainGradient,
                                  Eigen::Ref<Eigen::VectorXf> shiftGradient) const
{
    const Eigen::Index columns = gradient->cols();
    gainGradient.setZero();
    shiftGradient.setZero();
    for (Eigen::Index i = 0; i < columns; ++i)
    {
        gainGradient += gradient->col(i).cwiseProduct(normalized.col(i));
        shiftGradient += gradient->col(i);
    }

    const float share = 1.0F / static_cast<float>(columns);
    for (Eigen::Index i = 0; i < columns; ++i)
    {
        gradient->col(i) =
            gain.cwiseProduct(inverseDeviation)
                .cwiseProduct(gradient->col(i) - share * (shiftGradient + normalized.col(i).cwiseProduct(gainGradient)));
    }
}

} // namespace velox::engine

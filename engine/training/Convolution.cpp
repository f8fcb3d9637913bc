#include "engine/training/Convolution.h"

namespace velox::engine
{

void Convolve(const Eigen::Ref<const Eigen::MatrixXf>& weights, Eigen::Index stride, const Eigen::MatrixXf& input,
              Eigen::MatrixXf* output)
{
    const Eigen::Index inputs = input.rows();
    const Eigen::Index taps = weights.cols() / inputs;
    const Eigen::Index columns = input.cols() - (taps - 1) * stride;
    output->resize(weights.rows(), columns);
    output->noalias() = weights.leftCols(inputs) * input.leftCols(columns);
    for (Eigen::Index k = 1; k < taps; ++k)
    {
        output->noalias() += weights.middleCols(k * inputs, inputs) * input.middleCols(k * stride, columns);
    }
}

void WeightGradient(const Eigen::MatrixXf& outputGradient, Eigen::Index stride, const Eigen::MatrixXf& input,
                    Eigen::Ref<Eigen::MatrixXf> weightGradient)
{
    const Eigen::Index inputs = input.rows();
    const Eigen::Index taps = weightGradient.cols() / inputs;
    for (Eigen::Index k = 0; k < taps; ++k)
    {
        weightGradient.middleCols(k * inputs, inputs).noalias() =
            outputGradient * input.middleCols(k * stride, outputGradient.cols()).transpose();
    }
}

void InputGradient(const Eigen::Ref<const Eigen::MatrixXf>& weights, Eigen::Index stride, const Eigen::MatrixXf& outputGradient,
                   Eigen::MatrixXf* inputGradient)
{
    const Eigen::Index inputs = inputGradient->rows();
    const Eigen::Index taps = weights.cols() / inputs;
    inputGradient->setZero();
    for (Eigen::Index k = 0; k < taps; ++k)
    {
        inputGradient->middleCols(k * stride, outputGradient.cols()).noalias() +=
            weights.middleCols(k * inputs, inputs).transpose() * outputGradient;
    }
}

} // namespace velox::engine

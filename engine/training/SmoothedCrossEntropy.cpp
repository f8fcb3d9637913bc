#include "engine/training/SmoothedCrossEntropy.h"

#include <cmath>

namespace velox::engine
{

double SmoothedCrossEntropy(const std::vector<int>& labels, float smoothing, float scale, Eigen::MatrixXf* outputs)
{
    const float shared = smoothing / static_cast<float>(outputs->rows());
    double loss = 0.0;
    for (Eigen::Index i = 0; i < outputs->cols(); ++i)
    {
        auto column = outputs->col(i);
        float& labelled = column[labels[static_cast<std::size_t>(i)]];
        column.array() -= column.maxCoeff();
        const float expected = (1.0F - smoothing) * labelled + shared * column.sum();
        column.array() = column.array().exp();
        const float sum = column.sum();
        loss += static_cast<double>(scale * (std::log(sum) - expected));

        column.array() = scale * (column.array() / sum - shared);
        labelled -= scale * (1.0F - smoothing);
    }
    return loss;
}

} // namespace velox::engine

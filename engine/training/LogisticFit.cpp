#include "engine/training/LogisticFit.h"

#include <Eigen/Cholesky>

namespace velox::engine
{

LogisticRegression FitLogisticRegression(const std::vector<ExampleGroup>& groups, float ridge)
{
    constexpr int NewtonSteps = 20;
    const Eigen::Index features = groups.front().features.rows();
    Eigen::Index examples = 0;
    for (const ExampleGroup& group : groups)
    {
        examples += group.features.cols();
    }

    Eigen::MatrixXd x = Eigen::MatrixXd::Ones(features + 1, examples);
    Eigen::VectorXd target(examples);
    Eigen::VectorXd share(examples);
    Eigen::Index first = 0;
    for (const ExampleGroup& group : groups)
    {
        const Eigen::Index count = group.features.cols();
        x.block(0, first, features, count) = group.features.cast<double>();
        target.segment(first, count).setConstant(group.positive ? 1.0 : 0.0);
        share.segment(first, count).setConstant(group.share / static_cast<double>(count));
        first += count;
    }
    const Eigen::VectorXd mean = x.topRows(features).rowwise().mean();
    const Eigen::VectorXd deviation =
        ((x.topRows(features).colwise() - mean).array().square().rowwise().mean().sqrt() + 1e-6).matrix();
    x.topRows(features).colwise() -= mean;
    x.topRows(features).array().colwise() /= deviation.array();

    Eigen::VectorXd coefficients = Eigen::VectorXd::Zero(features + 1);
    Eigen::MatrixXd penalty = Eigen::MatrixXd::Identity(features + 1, features + 1) * static_cast<double>(ridge);
    penalty(features, features) = 1e-9;
    for (int round = 0; round < NewtonSteps; ++round)
    {
        const Eigen::VectorXd probability = (1.0 + (-(x.transpose() * coefficients)).array().exp()).inverse();
        const Eigen::VectorXd weight = share.array() * probability.array() * (1.0 - probability.array());
        const Eigen::VectorXd gradient = x * (share.array() * (target - probability).array()).matrix() - penalty * coefficients;
        const Eigen::MatrixXd hessian = x * weight.asDiagonal() * x.transpose() + penalty;
        coefficients += hessian.ldlt().solve(gradient);
    }

    const Eigen::VectorXd weights = coefficients.head(features).array() / deviation.array();
    return {weights.cast<float>(), static_cast<float>(coefficients[features] - weights.dot(mean))};
}

} // namespace velox::engine

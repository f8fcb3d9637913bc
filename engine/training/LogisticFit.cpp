#include "engine/training/LogisticFit.h"

#include <Eigen/Cholesky>

namespace velox::engine
{

LogisticRegression FitLogisticRegression(const Eigen::MatrixXf& positive, const Eigen::MatrixXf& negative, float ridge)
{
    constexpr int NewtonSteps = 20;
    const Eigen::Index features = positive.rows();
    const Eigen::Index examples = positive.cols() + negative.cols();

    Eigen::MatrixXd x(features + 1, examples);
    x.topLeftCorner(features, positive.cols()) = positive.cast<double>();
    x.topRightCorner(features, negative.cols()) = negative.cast<double>();
    x.bottomRows<1>().setOnes();
    const Eigen::VectorXd mean = x.topRows(features).rowwise().mean();
    const Eigen::VectorXd deviation =
        ((x.topRows(features).colwise() - mean).array().square().rowwise().mean().sqrt() + 1e-6).matrix();
    x.topRows(features).colwise() -= mean;
    x.topRows(features).array().colwise() /= deviation.array();

    Eigen::VectorXd target = Eigen::VectorXd::Zero(examples);
    target.head(positive.cols()).setOnes();
    Eigen::VectorXd share(examples);
    share.head(positive.cols()).setConstant(0.5 / static_cast<double>(positive.cols()));
    share.tail(negative.cols()).setConstant(0.5 / static_cast<double>(negative.cols()));

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

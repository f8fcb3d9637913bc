#include "Cepstrum.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace velox::engine
{

namespace
{

using Transform = Eigen::Matrix<float, CepstrumSize, MelChannels>;

Transform CosineTransform()
{
    constexpr auto Channels = static_cast<double>(MelChannels);
    Transform transform;
    for (Eigen::Index k = 0; k < transform.rows(); ++k)
    {
        const double scale = std::sqrt((k == 0 ? 1.0 : 2.0) / Channels);
        for (Eigen::Index n = 0; n < transform.cols(); ++n)
        {
            const double phase = std::numbers::pi * static_cast<double>(k) * (static_cast<double>(n) + 0.5) / Channels;
            transform(k, n) = static_cast<float>(scale * std::cos(phase));
        }
    }
    return transform;
}

} // namespace

Eigen::MatrixXf Cepstra(std::span<const MelFrame> logMel)
{
    static_assert(sizeof(MelFrame) == MelChannels * sizeof(float), "a sequence of frames is one matrix");
    static const Transform transform = CosineTransform();
    if (logMel.empty())
    {
        return Eigen::MatrixXf(CepstrumSize, 0);
    }
    using Channels = Eigen::Matrix<float, MelChannels, Eigen::Dynamic>;
    return transform * Eigen::Map<const Channels>(logMel.front().data(), MelChannels, static_cast<Eigen::Index>(logMel.size()));
}

void RemoveMean(Eigen::MatrixXf* cepstra)
{
    if (cepstra->cols() > 0)
    {
        const Eigen::VectorXf mean = cepstra->rowwise().mean();
        cepstra->colwise() -= mean;
    }
}

Eigen::MatrixXf Deltas(const Eigen::MatrixXf& sequence)
{
    constexpr Eigen::Index Reach = 2;
    constexpr float SquaresOfReach = 2.0F * (1.0F + 4.0F);

    Eigen::MatrixXf deltas = Eigen::MatrixXf::Zero(sequence.rows(), sequence.cols());
    for (Eigen::Index t = 0; t < sequence.cols(); ++t)
    {
        for (Eigen::Index k = 1; k <= Reach; ++k)
        {
            const Eigen::Index before = std::max<Eigen::Index>(t - k, 0);
            const Eigen::Index after = std::min(t + k, sequence.cols() - 1);
            deltas.col(t) += static_cast<float>(k) / SquaresOfReach * (sequence.col(after) - sequence.col(before));
        }
    }
    return deltas;
}

Eigen::MatrixXf WithDeltas(const Eigen::MatrixXf& cepstra)
{
    constexpr float DeltaScale = 2.5F;
    constexpr float DeltaDeltaScale = 5.0F;

    const Eigen::MatrixXf deltas = Deltas(cepstra);
    Eigen::MatrixXf frames(3 * cepstra.rows(), cepstra.cols());
    frames << cepstra, DeltaScale * deltas, DeltaDeltaScale * Deltas(deltas);
    return frames;
}

Eigen::MatrixXf UtteranceCepstra(std::span<const MelFrame> logMel)
{
    Eigen::MatrixXf cepstra = Cepstra(logMel);
    RemoveMean(&cepstra);
    return WithDeltas(cepstra);
}

} // namespace velox::engine

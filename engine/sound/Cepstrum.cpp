#include "engine/sound/Cepstrum.h"

#include "engine/sound/ChannelNormalizer.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

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

const Transform& TheTransform()
{
    static const Transform transform = CosineTransform();
    return transform;
}

void WriteDeltas(const Eigen::Ref<const Eigen::MatrixXf>& sequence, Eigen::Ref<Eigen::MatrixXf> deltas)
{
    constexpr Eigen::Index Reach = 2;
    constexpr float SquaresOfReach = 2.0F * (1.0F + 4.0F);

    deltas.setZero();
    for (Eigen::Index t = 0; t < sequence.cols(); ++t)
    {
        for (Eigen::Index k = 1; k <= Reach; ++k)
        {
            const Eigen::Index before = std::max<Eigen::Index>(t - k, 0);
            const Eigen::Index after = std::min(t + k, sequence.cols() - 1);
            deltas.col(t) += static_cast<float>(k) / SquaresOfReach * (sequence.col(after) - sequence.col(before));
        }
    }
}

/// Fills the lower two thirds of the frames from the coefficients in the upper one.
void AddDeltas(Eigen::Ref<Eigen::MatrixXf> frames)
{
    constexpr float DeltaScale = 2.5F;
    constexpr float DeltaDeltaScale = 5.0F;

    if (frames.cols() == 0)
    {
        return;
    }
    const Eigen::Index size = frames.rows() / 3;
    WriteDeltas(frames.topRows(size), frames.middleRows(size, size));
    WriteDeltas(frames.middleRows(size, size), frames.bottomRows(size));
    frames.middleRows(size, size) *= DeltaScale;
    frames.bottomRows(size) *= DeltaDeltaScale;
}

/// What lies 50 dB below the loudest frame's level or deeper comes to lie there: digital silence within an utterance is no sound
/// of its own.
std::vector<MelFrame> WithoutDepths(std::span<const MelFrame> logMel)
{
    constexpr float Deepest = 11.5F;
    float loudest = std::numeric_limits<float>::lowest();
    for (const MelFrame& frame : logMel)
    {
        loudest = std::max(loudest, MeanLevel(frame));
    }
    std::vector<MelFrame> frames(logMel.begin(), logMel.end());
    for (MelFrame& frame : frames)
    {
        for (float& value : frame)
        {
            value = std::max(value, loudest - Deepest);
        }
    }
    return frames;
}

} // namespace

Eigen::MatrixXf Cepstra(std::span<const MelFrame> logMel)
{
    static_assert(sizeof(MelFrame) == MelChannels * sizeof(float), "a sequence of frames is one matrix");
    if (logMel.empty())
    {
        return Eigen::MatrixXf(CepstrumSize, 0);
    }
    using Channels = Eigen::Matrix<float, MelChannels, Eigen::Dynamic>;
    return TheTransform() *
           Eigen::Map<const Channels>(logMel.front().data(), MelChannels, static_cast<Eigen::Index>(logMel.size()));
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
    Eigen::MatrixXf deltas(sequence.rows(), sequence.cols());
    WriteDeltas(sequence, deltas);
    return deltas;
}

Eigen::MatrixXf WithDeltas(const Eigen::MatrixXf& cepstra)
{
    Eigen::MatrixXf frames(3 * cepstra.rows(), cepstra.cols());
    frames.topRows(cepstra.rows()) = cepstra;
    AddDeltas(frames);
    return frames;
}

Eigen::MatrixXf UtteranceCepstra(std::span<const MelFrame> logMel)
{
    Eigen::MatrixXf cepstra = Cepstra(WithoutDepths(logMel));
    RemoveMean(&cepstra);
    return WithDeltas(cepstra);
}

Eigen::MatrixXf SideBySide(std::span<const Eigen::MatrixXf> sequences)
{
    Eigen::Index frames = 0;
    for (const Eigen::MatrixXf& sequence : sequences)
    {
        frames += sequence.cols();
    }
    Eigen::MatrixXf all(sequences.front().rows(), frames);
    Eigen::Index next = 0;
    for (const Eigen::MatrixXf& sequence : sequences)
    {
        all.middleCols(next, sequence.cols()) = sequence;
        next += sequence.cols();
    }
    return all;
}

void StretchCepstra(std::span<const MelFrame> features, Eigen::Ref<Eigen::MatrixXf> frames)
{
    for (std::size_t t = 0; t < features.size(); ++t)
    {
        frames.col(static_cast<Eigen::Index>(t)).head<CepstrumSize>().noalias() =
            TheTransform() * Eigen::Map<const Eigen::Matrix<float, MelChannels, 1>>(features[t].data());
    }
    AddDeltas(frames);
}

} // namespace velox::engine

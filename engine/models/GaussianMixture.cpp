#include "engine/models/GaussianMixture.h"

#include "engine/base/RandomStream.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <utility>

namespace velox::engine
{

namespace
{

/// Frames that go through the matrix products together: their posteriors stay in the cache.
constexpr Eigen::Index BlockSize = 512;

/// Clustering looks at this many frames for each component, evenly taken.
constexpr Eigen::Index ClusteringFramesPerComponent = 100;

/// A component with fewer frames keeps its mean and variance.
constexpr float LeastCount = 1e-3F;

constexpr float LeastWeight = 1e-6F;

/// Calls with the start and the size of each block.
template <typename Function>
void ForEachBlock(Eigen::Index frames, const Function& function)
{
    for (Eigen::Index start = 0; start < frames; start += BlockSize)
    {
        function(start, std::min(BlockSize, frames - start));
    }
}

/// Turns the columns, natural logarithms, into shares that add up to 1.
///
/// @return ln of each column's sum
Eigen::VectorXf Normalize(Eigen::MatrixXf* columns)
{
    const Eigen::RowVectorXf largest = columns->colwise().maxCoeff();
    columns->rowwise() -= largest;
    columns->array() = columns->array().exp();
    const Eigen::RowVectorXf sums = columns->colwise().sum();
    columns->array().rowwise() /= sums.array();
    return (largest.array() + sums.array().log()).transpose();
}

struct Moments
{
    Eigen::VectorXf mean;
    Eigen::VectorXf variance;
};

Moments MomentsOf(const Eigen::MatrixXf& frames)
{
    Moments moments;
    moments.mean = frames.rowwise().mean();
    moments.variance = (frames.colwise() - moments.mean).array().square().rowwise().mean().max(GaussianMixture::LeastVariance);
    return moments;
}

/// Evenly taken frames, brought to mean 0 and variance 1 in every dimension.
Eigen::MatrixXf ClusteringFrames(const Eigen::MatrixXf& frames, Eigen::Index components, const Moments& moments)
{
    const Eigen::Index stride = std::max<Eigen::Index>(1, frames.cols() / (components * ClusteringFramesPerComponent));
    const Eigen::Index count = frames.cols() / stride;
    Eigen::MatrixXf taken(frames.rows(), count);
    for (Eigen::Index i = 0; i < count; ++i)
    {
        taken.col(i) = (frames.col(i * stride) - moments.mean).cwiseQuotient(moments.variance.cwiseSqrt());
    }
    return taken;
}

/// A frame drawn with a probability that grows with its squared distance.
Eigen::Index DrawFarFrame(const Eigen::RowVectorXf& squaredDistances, RandomStream* random)
{
    double left = random->Uniform() * squaredDistances.cast<double>().sum();
    Eigen::Index drawn = 0;
    for (; drawn + 1 < squaredDistances.size(); ++drawn)
    {
        left -= static_cast<double>(squaredDistances(drawn));
        if (left < 0.0)
        {
            break;
        }
    }
    return drawn;
}

Eigen::MatrixXf SpreadCentres(const Eigen::MatrixXf& frames, Eigen::Index components, RandomStream* random)
{
    Eigen::MatrixXf centres(frames.rows(), components);
    centres.col(0) = frames.col(random->Integer(0, frames.cols() - 1));
    Eigen::RowVectorXf nearest = (frames.colwise() - centres.col(0)).colwise().squaredNorm();
    for (Eigen::Index k = 1; k < components; ++k)
    {
        centres.col(k) = frames.col(DrawFarFrame(nearest, random));
        nearest = nearest.cwiseMin((frames.colwise() - centres.col(k)).colwise().squaredNorm());
    }
    return centres;
}

/// Moves each centre to the mean of the frames that it is nearest to; one without frames stays.
void ClusterOnce(const Eigen::MatrixXf& frames, Eigen::MatrixXf* centres)
{
    Eigen::MatrixXf sums = Eigen::MatrixXf::Zero(centres->rows(), centres->cols());
    Eigen::VectorXf counts = Eigen::VectorXf::Zero(centres->cols());
    const Eigen::VectorXf halfNorms = 0.5F * centres->colwise().squaredNorm();
    ForEachBlock(frames.cols(), [&](Eigen::Index start, Eigen::Index size) {
        const auto block = frames.middleCols(start, size);
        Eigen::MatrixXf closeness = centres->transpose() * block;
        closeness.colwise() -= halfNorms;
        for (Eigen::Index t = 0; t < size; ++t)
        {
            Eigen::Index best = 0;
            closeness.col(t).maxCoeff(&best);
            sums.col(best) += block.col(t);
            counts(best) += 1.0F;
        }
    });
    for (Eigen::Index k = 0; k < centres->cols(); ++k)
    {
        if (counts(k) > 0.0F)
        {
            centres->col(k) = sums.col(k) / counts(k);
        }
    }
}

GaussianMixture ClusteredStart(const Eigen::MatrixXf& frames, const Moments& moments, const MixtureTraining& training)
{
    RandomStream random(training.seed);
    const Eigen::MatrixXf whitened = ClusteringFrames(frames, training.components, moments);
    Eigen::MatrixXf centres = SpreadCentres(whitened, training.components, &random);
    for (int round = 0; round < training.clusteringRounds; ++round)
    {
        ClusterOnce(whitened, &centres);
    }

    const Eigen::VectorXf deviation = moments.variance.cwiseSqrt();
    Eigen::MatrixXf means = deviation.asDiagonal() * centres;
    means.colwise() += moments.mean;
    return {Eigen::VectorXf::Constant(training.components, 1.0F / static_cast<float>(training.components)), std::move(means),
            moments.variance.replicate(1, training.components)};
}

GaussianMixture Maximise(const GaussianMixture& former, const Eigen::MatrixXf& frames, const Eigen::VectorXf& leastVariance)
{
    MixtureStatistics statistics = MixtureStatistics::Empty(former);
    Eigen::MatrixXf squares = Eigen::MatrixXf::Zero(frames.rows(), former.Components());
    ForEachBlock(frames.cols(), [&](Eigen::Index start, Eigen::Index size) {
        const auto block = frames.middleCols(start, size);
        const Eigen::MatrixXf posteriors = former.Posteriors(block);
        statistics.Add(block, posteriors);
        squares.noalias() += block.cwiseAbs2() * posteriors.transpose();
    });

    Eigen::MatrixXf means = former.Means();
    Eigen::MatrixXf variances = former.Variances();
    for (Eigen::Index k = 0; k < former.Components(); ++k)
    {
        if (statistics.counts(k) > LeastCount)
        {
            means.col(k) = statistics.sums.col(k) / statistics.counts(k);
            variances.col(k) = (squares.col(k) / statistics.counts(k) - means.col(k).cwiseAbs2()).cwiseMax(leastVariance);
        }
    }
    Eigen::VectorXf weights = statistics.counts.cwiseMax(LeastWeight * static_cast<float>(frames.cols()));
    weights /= weights.sum();
    return {std::move(weights), std::move(means), std::move(variances)};
}

} // namespace

GaussianMixture::GaussianMixture(Eigen::VectorXf newWeights, Eigen::MatrixXf newMeans, Eigen::MatrixXf newVariances)
    : weights(std::move(newWeights)), means(std::move(newMeans)), variances(std::move(newVariances))
{
    const Eigen::MatrixXf precisions = variances.cwiseInverse();
    linear = means.cwiseProduct(precisions).transpose();
    quadratic = -0.5F * precisions.transpose();
    const auto logNormalizer = static_cast<float>(std::log(2.0 * std::numbers::pi)) * static_cast<float>(means.rows());
    const Eigen::VectorXf logVariances = variances.array().log().colwise().sum().transpose();
    const Eigen::VectorXf squaredMeans = means.cwiseAbs2().cwiseProduct(precisions).colwise().sum().transpose();
    offset = weights.array().log() - 0.5F * (logNormalizer + logVariances.array() + squaredMeans.array());
}

Eigen::MatrixXf GaussianMixture::LogDensities(const Eigen::Ref<const Eigen::MatrixXf>& frames) const
{
    Eigen::MatrixXf densities = offset.replicate(1, frames.cols());
    densities.noalias() += linear * frames;
    densities.noalias() += quadratic * frames.cwiseAbs2();
    return densities;
}

Eigen::VectorXf GaussianMixture::LogLikelihoods(const Eigen::Ref<const Eigen::MatrixXf>& frames) const
{
    Eigen::VectorXf all(frames.cols());
    ForEachBlock(frames.cols(), [&](Eigen::Index start, Eigen::Index size) {
        Eigen::MatrixXf densities = LogDensities(frames.middleCols(start, size));
        all.segment(start, size) = Normalize(&densities);
    });
    return all;
}

float GaussianMixture::LogLikelihood(const Eigen::Ref<const Eigen::VectorXf>& frame) const
{
    float largest = -std::numeric_limits<float>::infinity();
    float sum = 0.0F; // of the densities, relative to the largest
    for (Eigen::Index k = 0; k < Components(); ++k)
    {
        const float logDensity =
            offset(k) + linear.row(k).dot(frame) + (quadratic.row(k).array() * frame.transpose().array().square()).sum();
        if (logDensity > largest)
        {
            sum *= std::exp(largest - logDensity);
            largest = logDensity;
        }
        sum += std::exp(logDensity - largest);
    }
    return largest + std::log(sum);
}

Eigen::MatrixXf GaussianMixture::Posteriors(const Eigen::Ref<const Eigen::MatrixXf>& frames) const
{
    Eigen::MatrixXf posteriors = LogDensities(frames);
    Normalize(&posteriors);
    return posteriors;
}

MixtureStatistics MixtureStatistics::Empty(const GaussianMixture& mixture)
{
    return {Eigen::VectorXf::Zero(mixture.Components()), Eigen::MatrixXf::Zero(mixture.Means().rows(), mixture.Components())};
}

void MixtureStatistics::Add(const Eigen::Ref<const Eigen::MatrixXf>& frames, const Eigen::Ref<const Eigen::MatrixXf>& posteriors)
{
    counts += posteriors.rowwise().sum();
    sums.noalias() += frames * posteriors.transpose();
}

void MixtureStatistics::Scale(float factor)
{
    counts *= factor;
    sums *= factor;
}

GaussianMixture TrainMixture(const Eigen::MatrixXf& frames, const MixtureTraining& training)
{
    const Moments moments = MomentsOf(frames);
    const Eigen::VectorXf leastVariance = (training.varianceFloor * moments.variance).cwiseMax(GaussianMixture::LeastVariance);
    GaussianMixture mixture = ClusteredStart(frames, moments, training);
    for (int round = 0; round < training.rounds; ++round)
    {
        mixture = Maximise(mixture, frames, leastVariance);
    }
    return mixture;
}

GaussianMixture AdaptMixture(const GaussianMixture& prior, const MixtureStatistics& statistics, float relevance)
{
    const Eigen::VectorXf evidence = statistics.counts.array() + relevance;
    Eigen::MatrixXf means = statistics.sums + relevance * prior.Means();
    means = means * evidence.cwiseInverse().asDiagonal();
    Eigen::VectorXf weights = statistics.counts + relevance * prior.Weights();
    weights /= weights.sum();
    return {std::move(weights), std::move(means), prior.Variances()};
}

} // namespace velox::engine

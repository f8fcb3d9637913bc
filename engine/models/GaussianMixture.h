#pragma once

#include <Eigen/Core>

#include <cstdint>

namespace velox::engine
{

/// A mixture of Gaussians with diagonal covariances (Reynolds and Rose, "Robust text-independent speaker identification using
/// Gaussian mixture speaker models", 1995). Frames are the columns of a matrix, dimensions x frames.
class GaussianMixture
{
public:
    /// Least variance of a dimension: what is divided by it stays finite.
    static constexpr float LeastVariance = 1e-6F;

    /// @param weights    one for each component; positive, together 1
    /// @param means      dimensions x components
    /// @param variances  dimensions x components; positive
    GaussianMixture(Eigen::VectorXf weights, Eigen::MatrixXf means, Eigen::MatrixXf variances);

    Eigen::Index Components() const
    {
        return weights.size();
    }
    const Eigen::VectorXf& Weights() const
    {
        return weights;
    }
    const Eigen::MatrixXf& Means() const
    {
        return means;
    }
    const Eigen::MatrixXf& Variances() const
    {
        return variances;
    }

    /// Natural logarithm of each frame's density.
    Eigen::VectorXf LogLikelihoods(const Eigen::Ref<const Eigen::MatrixXf>& frames) const;

    /// The same of one frame. Allocates nothing.
    float LogLikelihood(const Eigen::Ref<const Eigen::VectorXf>& frame) const;

    /// How far each component answers for each frame: components x frames, every column adds up to 1.
    Eigen::MatrixXf Posteriors(const Eigen::Ref<const Eigen::MatrixXf>& frames) const;

private:
    /// ln of weight times density, components x frames.
    Eigen::MatrixXf LogDensities(const Eigen::Ref<const Eigen::MatrixXf>& frames) const;

    Eigen::VectorXf weights;
    Eigen::MatrixXf means;
    Eigen::MatrixXf variances;

    // A component's log density is offset + linear * x + quadratic * x^2, so that matrix products give all of them.
    Eigen::VectorXf offset;
    Eigen::MatrixXf linear;    ///< components x dimensions
    Eigen::MatrixXf quadratic; ///< components x dimensions
};

/// What frames say of a mixture's components, weighted by their posteriors.
struct MixtureStatistics
{
    Eigen::VectorXf counts; ///< frames of each component
    Eigen::MatrixXf sums;   ///< of the frames, dimensions x components

    /// Adds frames whose posteriors (components x frames) are known.
    void Add(const Eigen::Ref<const Eigen::MatrixXf>& frames, const Eigen::Ref<const Eigen::MatrixXf>& posteriors);

    /// Counts every frame as this many, where frames are copies of one another.
    void Scale(float factor);

    static MixtureStatistics Empty(const GaussianMixture& mixture);
};

struct MixtureTraining
{
    Eigen::Index components = 128;
    int clusteringRounds = 5;
    int rounds = 8;
    /// Least variance, as a share of all frames' variance in that dimension.
    float varianceFloor = 0.01F;
    uint64_t seed = 1;
};

/// Fits a mixture: k-means with spread starting points (Arthur and Vassilvitskii, "k-means++", 2007), then expectation and
/// maximisation (Dempster, Laird and Rubin, "Maximum likelihood from incomplete data via the EM algorithm", 1977).
///
/// @param frames  at least as many as components
GaussianMixture TrainMixture(const Eigen::MatrixXf& frames, const MixtureTraining& training);

/// Moves means and weights from a prior towards what frames say; a component's prior counts as `relevance` frames, and variances
/// stay (Gauvain and Lee, "Maximum a posteriori estimation for multivariate Gaussian mixture observations of Markov chains",
/// 1994; Reynolds, Quatieri and Dunn, "Speaker verification using adapted Gaussian mixture models", 2000). The mean becomes (sum
/// + relevance * mean) / (count + relevance); weights become (count + relevance * weight) / (frames + relevance).
GaussianMixture AdaptMixture(const GaussianMixture& prior, const MixtureStatistics& statistics, float relevance);

} // namespace velox::engine

#include "engine/models/MixtureBlob.h"

#include "engine/sound/Cepstrum.h"

namespace velox::engine
{

namespace
{

constexpr uint32_t MostMixtureComponents = 256;

// With these every density of a finite frame is finite.
constexpr float LeastMixtureWeight = 1e-12F;
constexpr float MostMixtureWeight = 1.001F;
constexpr float MostMean = 1e5F;
constexpr float MostVariance = 1e8F;

template <typename Matrix>
auto Values(Matrix& matrix)
{
    return std::span(matrix.data(), static_cast<std::size_t>(matrix.size()));
}

template <typename Matrix>
bool Within(const Matrix& values, float least, float most)
{
    return (values.array() >= least).all() && (values.array() <= most).all();
}

} // namespace

void WriteMixtures(std::span<const GaussianMixture> mixtures, BlobWriter* writer)
{
    const Eigen::MatrixXf& variances = mixtures.front().Variances();
    writer->U32(static_cast<uint32_t>(variances.cols()));
    writer->U32(static_cast<uint32_t>(variances.rows()));
    writer->F32s(Values(variances));
    for (const GaussianMixture& mixture : mixtures)
    {
        writer->F32s(Values(mixture.Weights()));
        writer->Quantised(Values(mixture.Means()));
    }
}

std::optional<std::vector<GaussianMixture>> ReadMixtures(std::size_t count, BlobReader* reader)
{
    const uint32_t components = reader->Count(MostMixtureComponents);
    const uint32_t dimensions = reader->Count(CepstralFrameSize);
    Eigen::MatrixXf variances(dimensions, components);
    reader->F32s(Values(variances));
    if (components == 0 || dimensions != CepstralFrameSize || !Within(variances, GaussianMixture::LeastVariance, MostVariance))
    {
        return std::nullopt;
    }
    std::vector<GaussianMixture> mixtures;
    for (std::size_t i = 0; i < count; ++i)
    {
        Eigen::VectorXf weights(components);
        Eigen::MatrixXf means(dimensions, components);
        reader->F32s(Values(weights));
        reader->Quantised(Values(means));
        if (!Within(weights, LeastMixtureWeight, MostMixtureWeight) || !Within(means, -MostMean, MostMean))
        {
            return std::nullopt;
        }
        mixtures.emplace_back(weights, means, variances);
    }
    return mixtures;
}

} // namespace velox::engine

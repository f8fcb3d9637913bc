#include "engine/models/MixtureBlob.h"

#include "engine/sound/Cepstrum.h"

#include <gmock/gmock.h>

namespace MixtureBlobTests
{

using namespace velox::engine;

std::vector<uint8_t> Write(const std::vector<GaussianMixture>& mixtures)
{
    BlobWriter writer(BlobKind::AcousticModel);
    WriteMixtures(mixtures, &writer);
    return writer.Finish();
}

std::optional<std::vector<GaussianMixture>> Read(const std::vector<uint8_t>& blob, std::size_t count)
{
    Status status = Status::Success;
    BlobReader reader(BlobKind::AcousticModel, blob.data(), &status);
    auto mixtures = ReadMixtures(count, &reader);
    EXPECT_EQ(status, Status::Success);
    return reader.Finish() == Status::Success ? mixtures : std::nullopt;
}

GaussianMixture Mixture(float weight, float variance, Eigen::Index dimensions = CepstralFrameSize)
{
    Eigen::VectorXf weights(2);
    weights << weight, 1.0F - weight;
    Eigen::MatrixXf means = Eigen::MatrixXf::Zero(dimensions, 2);
    means(0, 0) = 32767.0F;
    means(1, 1) = -5.0F;
    return {weights, means, Eigen::MatrixXf::Constant(dimensions, 2, variance)};
}

TEST(MixtureBlob, MixturesComeBackWithTheirSharedVariances)
{
    const auto read = Read(Write({Mixture(0.25F, 2.0F), Mixture(0.5F, 2.0F)}), 2);
    ASSERT_TRUE(read);
    EXPECT_EQ((*read)[0].Weights(), Eigen::Vector2f(0.25F, 0.75F));
    EXPECT_EQ((*read)[1].Weights(), Eigen::Vector2f(0.5F, 0.5F));
    EXPECT_EQ((*read)[1].Means(), Mixture(0.5F, 2.0F).Means());
    EXPECT_EQ((*read)[1].Variances(), Eigen::MatrixXf::Constant(CepstralFrameSize, 2, 2.0F));
}

TEST(MixtureBlob, WeightsVariancesAndDimensionsThatCannotBeAreRefused)
{
    EXPECT_FALSE(Read(Write({Mixture(0.0F, 1.0F)}), 1));
    EXPECT_FALSE(Read(Write({Mixture(-0.5F, 1.0F)}), 1));
    EXPECT_FALSE(Read(Write({Mixture(0.5F, 0.0F)}), 1));
    EXPECT_FALSE(Read(Write({Mixture(0.5F, -1.0F)}), 1));
    EXPECT_FALSE(Read(Write({Mixture(1e-30F, 1.0F)}), 1));
    EXPECT_FALSE(Read(Write({Mixture(0.5F, 1e-40F)}), 1)) << "denormal: its reciprocal is no number";
    EXPECT_FALSE(Read(Write({Mixture(0.5F, 1e30F)}), 1));
    EXPECT_FALSE(Read(Write({Mixture(0.5F, 1.0F, CepstrumSize)}), 1));
    EXPECT_FALSE(Read(Write({Mixture(0.5F, 1.0F)}), 2)) << "one is missing";
}

} // namespace MixtureBlobTests

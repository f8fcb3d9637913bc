#include "engine/training/SpectrogramMasking.h"

#include <gmock/gmock.h>

namespace SpectrogramMaskingTests
{

using velox::engine::RandomStream;
using Masking = velox::engine::SpectrogramMasking;

constexpr Eigen::Index Channels = 40;
constexpr int Draws = 4000;

/// One crop of ones, masked.
Eigen::MatrixXf Masked(RandomStream* random)
{
    Eigen::MatrixXf features = Eigen::MatrixXf::Ones(Channels, 3);
    Masking::Apply(random, &features);
    return features;
}

TEST(SpectrogramMasking, ZeroesOneBandOfUpToEightChannelsOnHalfOfTheCrops)
{
    RandomStream random(1);
    int banded = 0;
    Eigen::Index widest = 0;
    std::vector<int> hits(Channels, 0);
    for (int draw = 0; draw < Draws; ++draw)
    {
        const Eigen::MatrixXf features = Masked(&random);
        Eigen::Index first = Channels;
        Eigen::Index last = -1;
        for (Eigen::Index i = 0; i < Channels; ++i)
        {
            if (features.row(i).isZero(0.0F))
            {
                first = std::min(first, i);
                last = i;
                ++hits[static_cast<std::size_t>(i)];
            }
        }
        const Eigen::Index width = last - first + 1;
        if (last >= 0)
        {
            ++banded;
            ASSERT_TRUE(features.middleRows(first, width).isZero(0.0F)) << "more than one band";
            widest = std::max(widest, width);
        }
    }
    EXPECT_NEAR(static_cast<double>(banded) / Draws, 0.5, 0.03);
    EXPECT_EQ(widest, 8);
    EXPECT_THAT(hits, testing::Each(testing::Gt(0)));
}

TEST(SpectrogramMasking, AddsTheSameOffsetToAllFramesOfSomeCrops)
{
    RandomStream random(2);
    int shifted = 0;
    for (int draw = 0; draw < Draws; ++draw)
    {
        const Eigen::MatrixXf features = Masked(&random);
        ASSERT_EQ(features.col(0), features.col(1));
        ASSERT_EQ(features.col(0), features.col(2));
        shifted += (features.array() != 0.0F && features.array() != 1.0F).any() ? 1 : 0;
    }
    EXPECT_NEAR(static_cast<double>(shifted) / Draws, 0.4, 0.03);
}

TEST(SpectrogramMasking, TheOffsetHasItsDeviationOverChannelsAndDraws)
{
    RandomStream random(3);
    double squares = 0.0;
    for (int draw = 0; draw < Draws; ++draw)
    {
        squares += static_cast<double>(Masking::SmoothOffset(Channels, &random).squaredNorm());
    }
    EXPECT_NEAR(std::sqrt(squares / (Draws * Channels)), 0.35, 0.01);
}

TEST(SpectrogramMasking, TheOffsetHardlyDiffersBetweenNeighbours)
{
    RandomStream random(4);
    double squares = 0.0;
    for (int draw = 0; draw < Draws; ++draw)
    {
        const Eigen::VectorXf offset = Masking::SmoothOffset(Channels, &random);
        squares += static_cast<double>((offset.tail(Channels - 1) - offset.head(Channels - 1)).squaredNorm());
    }
    EXPECT_LT(std::sqrt(squares / (Draws * (Channels - 1))), 0.06);
}

} // namespace SpectrogramMaskingTests

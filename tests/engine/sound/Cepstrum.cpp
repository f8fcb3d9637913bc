#include "engine/sound/Cepstrum.h"

#include <gmock/gmock.h>

#include <cmath>
#include <numbers>
#include <vector>

namespace CepstrumTests
{

using namespace velox::engine;

constexpr float Tolerance = 1e-4F;

MelFrame Constant(float value)
{
    MelFrame frame;
    frame.fill(value);
    return frame;
}

/// The k-th row of the transform without its scale.
MelFrame Cosine(int k)
{
    MelFrame frame{};
    for (std::size_t n = 0; n < MelChannels; ++n)
    {
        frame[n] = static_cast<float>(std::cos(std::numbers::pi * k * (static_cast<double>(n) + 0.5) / MelChannels));
    }
    return frame;
}

TEST(Cepstrum, AConstantIsAllInTheZerothCoefficient)
{
    const Eigen::MatrixXf cepstra = Cepstra(std::vector{Constant(3.0F)});
    ASSERT_EQ(cepstra.rows(), CepstrumSize);
    ASSERT_EQ(cepstra.cols(), 1);
    EXPECT_NEAR(cepstra(0, 0), 3.0F * std::sqrt(40.0F), Tolerance);
    EXPECT_LT(cepstra.bottomRows(CepstrumSize - 1).cwiseAbs().maxCoeff(), Tolerance);
}

TEST(Cepstrum, ACosineIsAllInItsOwnCoefficient)
{
    for (int k = 1; k < CepstrumSize; ++k)
    {
        SCOPED_TRACE(k);
        const Eigen::VectorXf cepstrum = Cepstra(std::vector{Cosine(k)}).col(0);
        Eigen::VectorXf expected = Eigen::VectorXf::Zero(CepstrumSize);
        expected(k) = std::sqrt(20.0F); // sqrt(2 / 40) times the sum of 40 squared cosines, 20
        EXPECT_LT((cepstrum - expected).cwiseAbs().maxCoeff(), Tolerance);
    }
}

TEST(Cepstrum, CosinesAboveTheLastCoefficientAreDropped)
{
    EXPECT_LT(Cepstra(std::vector{Cosine(13)}).cwiseAbs().maxCoeff(), Tolerance);
}

TEST(Cepstrum, FramesAreColumnsInTheirOrder)
{
    const Eigen::MatrixXf cepstra = Cepstra(std::vector{Constant(1.0F), Constant(2.0F), Constant(-1.0F)});
    const float unit = std::sqrt(40.0F);
    EXPECT_NEAR(cepstra(0, 0), unit, Tolerance);
    EXPECT_NEAR(cepstra(0, 1), 2.0F * unit, Tolerance);
    EXPECT_NEAR(cepstra(0, 2), -unit, Tolerance);
}

TEST(Cepstrum, NoFramesGiveNoColumns)
{
    EXPECT_EQ(UtteranceCepstra({}).cols(), 0);
}

TEST(Cepstrum, MeanOfEachRowIsRemoved)
{
    Eigen::MatrixXf rows(2, 3);
    rows << 1.0F, 2.0F, 6.0F, -4.0F, 0.0F, 4.0F;
    RemoveMean(&rows);
    Eigen::MatrixXf expected(2, 3);
    expected << -2.0F, -1.0F, 3.0F, -4.0F, 0.0F, 4.0F;
    EXPECT_TRUE(rows.isApprox(expected, Tolerance)) << rows;
}

TEST(Cepstrum, DeltasOfARampAreItsSlopeAndShrinkWhereTheEndsAreRepeated)
{
    Eigen::MatrixXf ramp(1, 7);
    ramp << 0.0F, 3.0F, 6.0F, 9.0F, 12.0F, 15.0F, 18.0F;
    Eigen::MatrixXf expected(1, 7);
    // First frame: (1 * (3 - 0) + 2 * (6 - 0)) / 10; second: (1 * (6 - 0) + 2 * (9 - 0)) / 10.
    expected << 1.5F, 2.4F, 3.0F, 3.0F, 3.0F, 2.4F, 1.5F;
    EXPECT_TRUE(Deltas(ramp).isApprox(expected, Tolerance)) << Deltas(ramp);
}

TEST(Cepstrum, DeltasOfOneFrameAreZero)
{
    EXPECT_EQ(Deltas(Eigen::MatrixXf::Constant(2, 1, 5.0F)), Eigen::MatrixXf::Zero(2, 1));
}

TEST(Cepstrum, DeltasAndTheirDeltasAreScaledBelowTheCoefficients)
{
    // x = t^2: the delta is 2 t and its delta 2, away from the ends.
    Eigen::MatrixXf parabola(CepstrumSize, 11);
    for (Eigen::Index t = 0; t < parabola.cols(); ++t)
    {
        parabola.col(t).setConstant(static_cast<float>(t * t));
    }
    const Eigen::MatrixXf frames = WithDeltas(parabola);
    ASSERT_EQ(frames.rows(), CepstralFrameSize);
    EXPECT_NEAR(frames(0, 5), 25.0F, Tolerance);
    EXPECT_NEAR(frames(CepstrumSize, 5), 2.5F * 10.0F, Tolerance);
    EXPECT_NEAR(frames(2 * CepstrumSize, 5), 5.0F * 2.0F, Tolerance);
    EXPECT_NEAR(frames(CepstralFrameSize - 1, 5), 5.0F * 2.0F, Tolerance);
}

TEST(Cepstrum, AChannelThatIsTheSameThroughoutAnUtteranceLeavesNoTrace)
{
    std::vector<MelFrame> plain;
    std::vector<MelFrame> coloured;
    for (int t = 0; t < 20; ++t)
    {
        plain.push_back(Cosine(t % 5));
        coloured.push_back(plain.back());
        for (std::size_t n = 0; n < MelChannels; ++n)
        {
            coloured.back()[n] += 0.1F * static_cast<float>(n);
        }
    }
    EXPECT_LT((UtteranceCepstra(plain) - UtteranceCepstra(coloured)).cwiseAbs().maxCoeff(), 1e-3F);
}

TEST(Cepstrum, SequencesAreSetSideBySide)
{
    const std::vector<Eigen::MatrixXf> parts{Eigen::MatrixXf::Constant(2, 1, 1.0F), Eigen::MatrixXf::Constant(2, 2, 3.0F)};
    Eigen::MatrixXf expected(2, 3);
    expected << 1.0F, 3.0F, 3.0F, 1.0F, 3.0F, 3.0F;
    EXPECT_EQ(SideBySide(parts), expected);
}

} // namespace CepstrumTests

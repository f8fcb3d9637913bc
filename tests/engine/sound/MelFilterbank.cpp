#include "engine/sound/MelFilterbank.h"

#include "engine/sound/PowerSpectrum.h"

#include <gmock/gmock.h>

#include <cmath>

namespace
{

using namespace velox::engine;
using testing::Each;
using testing::FloatEq;
using testing::FloatNear;

constexpr std::size_t Bins = PowerSpectrum::Bins;
const float LogFloor = std::log(1e-6F);

MelFrame Apply(const MelFilterbank& filterbank, const std::array<float, Bins>& power)
{
    MelFrame frame{};
    filterbank.Apply(power.data(), &frame);
    return frame;
}

TEST(MelFilterbank, CentresLieEvenlyOnTheMelScale)
{
    // mel(80 Hz) = 121.957, mel(7200 Hz) = 2731.327, and 41 steps of 63.643 between them.
    const MelFilterbank filterbank;
    EXPECT_NEAR(filterbank.CentreFrequency(0), 125.315, 0.001);
    EXPECT_NEAR(filterbank.CentreFrequency(1), 173.263, 0.001);
    EXPECT_NEAR(filterbank.CentreFrequency(19), 1713.227, 0.001);
    EXPECT_NEAR(filterbank.CentreFrequency(39), 6766.239, 0.001);
}

TEST(MelFilterbank, TheWarpMultipliesEveryCentre)
{
    const MelFilterbank plain;
    const MelFilterbank warped(1.1);
    for (std::size_t channel = 0; channel < MelChannels; ++channel)
    {
        EXPECT_NEAR(warped.CentreFrequency(channel), 1.1 * plain.CentreFrequency(channel), 1e-6) << channel;
    }
}

TEST(MelFilterbank, ABinIsSharedByTheTwoTrianglesAroundIt)
{
    // Bin 4 is 125 Hz: on the rise of channel 0, from 80 to 125.315 Hz, and 0.993 of the way up; channel 1 rises from there.
    // Bin 5 is 156.25 Hz: 0.355 on the fall of channel 0 and 0.645 on the rise of channel 1.
    std::array<float, Bins> power{};
    power[4] = 1.0F;
    EXPECT_NEAR(std::exp(Apply(MelFilterbank(), power)[0]), 0.99305, 1e-4);
    EXPECT_THAT(Apply(MelFilterbank(), power)[1], FloatNear(LogFloor, 1e-4F));
    power[4] = 0.0F;
    power[5] = 1.0F;
    EXPECT_NEAR(std::exp(Apply(MelFilterbank(), power)[0]), 0.35482, 1e-4);
    EXPECT_NEAR(std::exp(Apply(MelFilterbank(), power)[1]), 0.64518, 1e-4);
    EXPECT_THAT(Apply(MelFilterbank(), power)[2], FloatNear(LogFloor, 1e-4F));
}

TEST(MelFilterbank, NothingBelow80HzOrFrom7200HzOnIsHeard)
{
    std::array<float, Bins> power{};
    for (const std::size_t bin : {0U, 1U, 2U, 231U, 256U}) // 0 to 62.5 Hz, 7218.75 and 8000 Hz
    {
        power[bin] = 1.0F;
    }
    EXPECT_THAT(Apply(MelFilterbank(), power), Each(FloatEq(LogFloor)));
    power[230] = 1.0F; // 7187.5 Hz
    EXPECT_GT(Apply(MelFilterbank(), power)[39], LogFloor + 1.0F);
}

TEST(MelFilterbank, SilenceGivesTheFloor)
{
    EXPECT_THAT(Apply(MelFilterbank(), {}), Each(FloatEq(LogFloor)));
}

TEST(MelFilterbank, AWarpPastTheHighestBinStaysWithinTheSpectrum)
{
    std::array<float, Bins> power{};
    power.fill(1.0F);
    // The last channel's triangle goes from 7246 over 7714 to 8208 Hz: 15.4 bins' worth, 1.2 of them above the last bin, 8000 Hz.
    EXPECT_NEAR(std::exp(Apply(MelFilterbank(1.14), power)[39]), 14.2, 0.05);
}

} // namespace

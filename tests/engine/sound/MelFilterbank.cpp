#include "engine/sound/MelFilterbank.h"

#include "engine/sound/PowerSpectrum.h"

#include <gmock/gmock.h>

#include <cmath>

namespace MelFilterbankTests
{

using namespace velox::engine;
using testing::Each;
using testing::FloatEq;
using testing::FloatNear;

constexpr std::size_t Bins = PowerSpectrum::Bins;
const float LogFloor = std::log(1e-9F);

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

TEST(MelFilterbank, TheWarpMultipliesTheCentresUpToItsBend)
{
    // The bend lies at 5760 Hz, and where the warp is above 1, at 5760 Hz after it.
    const MelFilterbank plain;
    for (const double warp : {0.7, 0.9, 1.1, 1.5})
    {
        SCOPED_TRACE(warp);
        const MelFilterbank warped(warp);
        for (std::size_t channel = 0; channel < MelChannels; ++channel)
        {
            const double frequency = plain.CentreFrequency(channel);
            if (std::max(frequency, warp * frequency) < 5760.0)
            {
                EXPECT_NEAR(warped.CentreFrequency(channel), warp * frequency, 1e-6) << channel;
            }
        }
    }
}

TEST(MelFilterbank, NoWarpedChannelLeavesTheBand)
{
    const double lastCentre = MelFilterbank().CentreFrequency(MelChannels - 1);
    for (const double warp : {0.65, 0.8, 1.2, 1.55})
    {
        SCOPED_TRACE(warp);
        const MelFilterbank warped(warp);
        for (std::size_t channel = 1; channel < MelChannels; ++channel)
        {
            EXPECT_GT(warped.CentreFrequency(channel), warped.CentreFrequency(channel - 1)) << channel;
        }
        // Beyond the bend the distance to 7200 Hz is scaled.
        const double bend = 5760.0 / std::max(1.0, warp);
        const double slope = (7200.0 - warp * bend) / (7200.0 - bend);
        EXPECT_NEAR(warped.CentreFrequency(MelChannels - 1), 7200.0 - slope * (7200.0 - lastCentre), 1e-6);
        std::array<float, Bins> power{};
        std::fill(power.begin() + 231, power.end(), 1.0F); // from 7218.75 Hz on
        EXPECT_THAT(Apply(warped, power), Each(FloatEq(LogFloor)));
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

} // namespace MelFilterbankTests

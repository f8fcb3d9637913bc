#include "engine/sound/PowerSpectrum.h"

#include "tests/engine/support/Signals.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <numeric>

namespace PowerSpectrumTests
{

using namespace velox::engine;
using testing::Each;
using testing::FloatEq;

constexpr std::size_t Bins = PowerSpectrum::Bins;
/// Sum of the window's values, and of their squares.
constexpr double WindowSum = 215.54;
constexpr double WindowEnergy = 158.569;

std::array<float, Bins> Compute(const std::vector<float>& samples)
{
    PowerSpectrum spectrum;
    std::array<float, Bins> power{};
    spectrum.Compute(samples.data(), power.data());
    return power;
}

TEST(PowerSpectrum, AConstantIsTheWindowsSumAtZero)
{
    EXPECT_NEAR(Compute(std::vector<float>(WindowSize, 0.5F))[0], std::pow(0.5 * WindowSum, 2.0), 0.5);
}

TEST(PowerSpectrum, AClickIsAsStrongInEveryBin)
{
    std::vector<float> click(WindowSize, 0.0F);
    click.front() = 1.0F; // where the window is 0.08
    const std::array<float, Bins> power = Compute(click);
    EXPECT_THAT(power, Each(testing::FloatNear(0.0064F, 1e-6F)));
}

TEST(PowerSpectrum, ASineStandsInItsBin)
{
    constexpr std::size_t Bin = 64; // 2000 Hz
    const std::array<float, Bins> power = Compute(Signals::Sine(2000.0, 0.5, WindowSize));
    EXPECT_EQ(std::max_element(power.begin(), power.end()) - power.begin(), Bin);
    EXPECT_NEAR(power[Bin], std::pow(0.25 * WindowSum, 2.0), 3.0);
    EXPECT_LT(power[Bin + 8], 1e-4F * power[Bin]);
}

TEST(PowerSpectrum, NoiseHasTheWindowsEnergyInTheMean)
{
    constexpr int Windows = 200;
    double sum = 0.0;
    for (int i = 0; i < Windows; ++i)
    {
        const std::array<float, Bins> power = Compute(Signals::Noise(1.0, WindowSize, static_cast<uint64_t>(i)));
        sum += static_cast<double>(std::accumulate(power.begin(), power.end(), 0.0F)) / static_cast<double>(Bins);
    }
    EXPECT_NEAR(sum / Windows, WindowEnergy / 3.0, 0.05 * WindowEnergy / 3.0);
}

TEST(PowerSpectrum, OneWindowLeavesNothingForTheNext)
{
    PowerSpectrum spectrum;
    std::array<float, Bins> power{};
    spectrum.Compute(std::vector<float>(WindowSize, 1.0F).data(), power.data());
    spectrum.Compute(std::vector<float>(WindowSize, 0.0F).data(), power.data());
    EXPECT_THAT(power, Each(FloatEq(0.0F)));
}

} // namespace PowerSpectrumTests

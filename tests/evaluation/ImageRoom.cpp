#include "evaluation/ImageRoom.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace ImageRoomTests
{

using namespace velox::evaluation;

/// Seconds in which Schroeder's backward integral falls from -5 to -25 dB, times three.
double DecayTime(const std::vector<float>& response)
{
    std::vector<double> energy(response.size() + 1, 0.0);
    for (std::size_t n = response.size(); n > 0; --n)
    {
        energy[n - 1] = energy[n] + static_cast<double>(response[n - 1]) * static_cast<double>(response[n - 1]);
    }
    const auto below = [&](double decibels) {
        const double limit = energy[0] * std::pow(10.0, decibels / 10.0);
        return std::find_if(energy.begin(), energy.end(), [&](double left) { return left < limit; }) - energy.begin();
    };
    return 3.0 * static_cast<double>(below(-25.0) - below(-5.0)) / 16'000.0;
}

TEST(ImageRoom, TheDirectSoundComesFirstAndIsTheLoudest)
{
    for (uint64_t seed = 1; seed <= 10; ++seed)
    {
        const std::vector<float> response = ImageRoomResponse(0.45, seed);
        EXPECT_EQ(response.size(), 7201U);
        EXPECT_NEAR(response[0], 1.0F, 1e-4F);
        EXPECT_TRUE(std::all_of(response.begin() + 1, response.end(), [](float value) { return std::abs(value) < 1.0F; }));
    }
}

TEST(ImageRoom, DecaysAsLongAsItIsAskedTo)
{
    for (const double wanted : {0.3, 0.45, 0.7})
    {
        double sum = 0.0;
        for (uint64_t seed = 1; seed <= 8; ++seed)
        {
            sum += DecayTime(ImageRoomResponse(wanted, seed));
        }
        EXPECT_NEAR(sum / 8.0, wanted, 0.35 * wanted) << "Eyring's formula takes the sound to be diffuse";
    }
}

TEST(ImageRoom, EachSeedIsARoomOfItsOwn)
{
    EXPECT_EQ(ImageRoomResponse(0.45, 1), ImageRoomResponse(0.45, 1));
    EXPECT_NE(ImageRoomResponse(0.45, 1), ImageRoomResponse(0.45, 2));
}

} // namespace ImageRoomTests

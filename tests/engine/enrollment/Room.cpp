#include "engine/enrollment/Room.h"

#include "tests/engine/support/Signals.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace RoomTests
{

using namespace velox::engine;

/// Seconds that the tail takes to lose 60 dB, from its fall between -5 and -25 dB (Schroeder, "New method of measuring
/// reverberation time", 1965: energy integrated backward).
double MeasureReverberationTime(std::span<const float> tail)
{
    std::vector<double> left(tail.size());
    double sum = 0.0;
    for (std::size_t i = tail.size(); i-- > 0;)
    {
        sum += static_cast<double>(tail[i]) * static_cast<double>(tail[i]);
        left[i] = sum;
    }
    const auto below = [&](double decibels) {
        const double level = sum * std::pow(10.0, decibels / 10.0);
        return std::find_if(left.begin(), left.end(), [&](double energy) { return energy < level; }) - left.begin();
    };
    return 3.0 * static_cast<double>(below(-25.0) - below(-5.0)) / static_cast<double>(SampleRate);
}

std::span<const float> Tail(const std::vector<float>& response)
{
    return std::span(response).subspan(1);
}

TEST(Room, TheTailDecaysInTheReverberationTime)
{
    for (const double time : {0.15, 0.4, 0.8})
    {
        SCOPED_TRACE(time);
        const std::vector<float> response = RoomResponse({time, 3.0, 11});
        EXPECT_EQ(response.size(), static_cast<std::size_t>(time * 16000.0));
        EXPECT_NEAR(MeasureReverberationTime(Tail(response)), time, 0.08 * time);
    }
}

TEST(Room, TheTailHasItsShareOfTheEnergy)
{
    for (const double ratio : {-2.0, 4.0, 10.0})
    {
        SCOPED_TRACE(ratio);
        const std::vector<float> response = RoomResponse({0.3, ratio, 5});
        EXPECT_FLOAT_EQ(response[0], 1.0F);
        const double energy = std::pow(Signals::RootMeanSquare(Tail(response)), 2.0) * static_cast<double>(response.size() - 1);
        EXPECT_NEAR(-10.0 * std::log10(energy), ratio, 0.01);
    }
}

TEST(Room, TheFirstReflectionComesAfterTwoMilliseconds)
{
    const std::vector<float> response = RoomResponse({0.3, 0.0, 5});
    EXPECT_TRUE(std::all_of(response.begin() + 1, response.begin() + 32, [](float value) { return value == 0.0F; }));
    EXPECT_NE(response[32], 0.0F);
}

TEST(Room, TheSeedMakesTheRoom)
{
    EXPECT_EQ(RoomResponse({0.2, 0.0, 1}), RoomResponse({0.2, 0.0, 1}));
    EXPECT_NE(RoomResponse({0.2, 0.0, 1}), RoomResponse({0.2, 0.0, 2}));
}

} // namespace RoomTests

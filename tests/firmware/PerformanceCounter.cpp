#include "firmware/PerformanceCounter.h"

#include <gtest/gtest.h>

#include <limits>

namespace PerformanceCounterTests
{

using Counter = velox::firmware::PerformanceCounter;

TEST(PerformanceCounter, ASampleIs625Ticks)
{
    const Counter counter;
    EXPECT_EQ(counter.At(0), 0U);
    EXPECT_EQ(counter.At(1), 625U);
    EXPECT_EQ(counter.At(16000), 10'000'000U) << "a second";
}

TEST(PerformanceCounter, TheOffsetIsAdded)
{
    const Counter counter{1'000'000'000'000, 0};
    EXPECT_EQ(counter.At(0), 1'000'000'000'000U);
    EXPECT_EQ(counter.At(8000), 1'000'005'000'000U);
}

TEST(PerformanceCounter, DriftIsInMillionths)
{
    EXPECT_EQ((Counter{0, 100}.At(16000)), 10'001'000U);
    EXPECT_EQ((Counter{0, -100}.At(16000)), 9'999'000U);
    EXPECT_EQ((Counter{7, 20}.At(16000 * 3600)), 36'000'720'007U) << "72 ms in an hour";
}

TEST(PerformanceCounter, RoundsToTheNearestTick)
{
    EXPECT_EQ((Counter{0, 799}.At(1)), 625U) << "625.499";
    EXPECT_EQ((Counter{0, 800}.At(1)), 626U) << "625.5";
    EXPECT_EQ((Counter{0, -801}.At(1)), 624U) << "624.499";
    EXPECT_EQ((Counter{0, -800}.At(1)), 625U) << "624.5";
}

TEST(PerformanceCounter, ACenturyOfAudioFits)
{
    constexpr int64_t Century = int64_t{16000} * 3600 * 24 * 36525 / 100;
    EXPECT_EQ((Counter{0, 0}.At(Century)), 315'576'000'000'000U);
}

TEST(PerformanceCounter, WrapsAsTheHardwaresDoes)
{
    EXPECT_EQ((Counter{std::numeric_limits<uint64_t>::max(), 0}.At(1)), 624U);
}

} // namespace PerformanceCounterTests

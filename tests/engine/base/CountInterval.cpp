#include "engine/base/CountInterval.h"

#include <gtest/gtest.h>

namespace CountIntervalTests
{

using velox::engine::CountForTwice;
using velox::engine::RateFromCount;
using velox::engine::ShareFromCount;
using Interval = velox::engine::CountInterval;

TEST(CountInterval, IntervalsAreThePublishedOnes)
{
    const struct
    {
        int64_t count;
        double least;
        double most;
    } cases[]{{0, 0.0, 3.689},    {1, 0.025, 5.572},   {2, 0.2422, 7.225},
              {8, 3.454, 15.763}, {10, 4.795, 18.390}, {50, 37.111, 65.919}};
    for (const auto& own : cases)
    {
        SCOPED_TRACE(own.count);
        const Interval rate = RateFromCount(own.count, 1.0);
        EXPECT_NEAR(rate.least, own.least, 0.0011);
        EXPECT_NEAR(rate.most, own.most, 0.0011);
        EXPECT_DOUBLE_EQ(RateFromCount(own.count, 4.0).most, rate.most / 4.0);
    }
}

TEST(CountInterval, ThousandsAreCountedWithoutOverflow)
{
    const Interval rate = RateFromCount(10'000, 1.0);
    EXPECT_NEAR(rate.least, 9805.0, 2.0);
    EXPECT_NEAR(rate.most, 10198.0, 2.0);
}

TEST(CountInterval, EightIsTheLeastCountThatTellsTheRateToWithinTwice)
{
    const auto ratio = [](int64_t count) {
        return RateFromCount(count, 1.0).most / static_cast<double>(count);
    };
    EXPECT_LE(ratio(CountForTwice), 2.0);
    EXPECT_GT(ratio(CountForTwice - 1), 2.0);
}

TEST(CountInterval, SharesHaveTheExactInterval)
{
    const struct
    {
        int64_t count;
        int64_t of;
        double least;
        double most;
    } cases[]{{0, 10, 0.0, 0.3085},         {10, 10, 0.6915, 1.0},   {1, 10, 0.0025, 0.4450}, {0, 0, 0.0, 1.0},
              {30, 1000, 0.02033, 0.04256}, {5, 10, 0.1871, 0.8129}, {3, 35, 0.0180, 0.2306}, {1, 1, 0.0250, 1.0}};
    for (const auto& own : cases)
    {
        SCOPED_TRACE(own.count);
        const Interval share = ShareFromCount(own.count, own.of);
        EXPECT_NEAR(share.least, own.least, 0.0001);
        EXPECT_NEAR(share.most, own.most, 0.0001);
    }
    EXPECT_NEAR(ShareFromCount(5'000, 10'000).most, 0.5098, 0.0002);
}

} // namespace CountIntervalTests

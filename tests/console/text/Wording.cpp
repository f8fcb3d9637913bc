#include "console/text/Wording.h"

#include <gtest/gtest.h>

namespace WordingTests
{

using namespace velox::console;

TEST(Wording, NumbersGoWithTheirNoun)
{
    EXPECT_EQ(Counted(1, "take"), "1 take");
    EXPECT_EQ(Counted(0, "take"), "0 takes");
    EXPECT_EQ(Counted(1, "near miss", "near misses"), "1 near miss");
    EXPECT_EQ(Counted(2, "near miss", "near misses"), "2 near misses");
}

TEST(Wording, ClocksCarryOver)
{
    EXPECT_EQ(ClockText(7.25), "0:07.25");
    EXPECT_EQ(ClockText(59.999), "1:00.00");
    EXPECT_EQ(ClockText(3723.4), "1:02:03.40");
    EXPECT_EQ(ClockText(119.97, 1), "2:00.0");
    EXPECT_EQ(ClockText(3600.0, 0), "1:00:00");
}

TEST(Wording, PlacesAreInSecondsUpToAMinute)
{
    EXPECT_EQ(PlaceText(0.5, 1.25), "0.50 s to 1.25 s");
    EXPECT_EQ(PlaceText(1.0, 1.0), "1.00 s");
    EXPECT_EQ(PlaceText(59.0, 61.5), "0:59.0 to 1:01.5");
    EXPECT_EQ(PlaceText(119.97, 3725.0), "2:00.0 to 1:02:05.0");
}

TEST(Wording, DurationsAreInHoursFromSixMinutesOn)
{
    EXPECT_EQ(DurationText(12.34), "12.3 s");
    EXPECT_EQ(DurationText(1800.0), "0.50 h");
}

TEST(Wording, ListsHaveCommas)
{
    const std::string words[]{"a", "b"};
    EXPECT_EQ(Joined(words), "a, b");
    EXPECT_EQ(Joined({}), "");
}

} // namespace WordingTests

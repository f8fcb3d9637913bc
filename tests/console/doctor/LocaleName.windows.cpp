#include "console/doctor/LocaleName.h"

#include <gtest/gtest.h>

using namespace velox::console;

TEST(LocaleName, IsWhatWindowsCallsTheLanguage)
{
    EXPECT_EQ(LocaleName(1033), "English (United States)");
    EXPECT_EQ(LocaleName(1040), "Italian (Italy)");
}

TEST(LocaleName, NumbersWithoutALanguageHaveNone)
{
    constexpr uint16_t NoLanguages[]{0, 0x0C00, 0x1000, 0x1400, 65001};
    for (const uint16_t language : NoLanguages)
    {
        EXPECT_EQ(LocaleName(language), "") << language;
    }
}

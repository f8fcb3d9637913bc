#include "console/text/Style.h"

#include <gtest/gtest.h>

using velox::console::WantsColour;

TEST(Style, WithoutColoursTextsStayAsTheyAre)
{
    const velox::console::Style plain(false);
    EXPECT_EQ(plain.Good("a") + plain.Bad("b") + plain.Dim("c") + plain.Heading("d"), "abcd");
}

TEST(Style, ColoursEndWhereTheTextEnds)
{
    const velox::console::Style coloured(true);
    EXPECT_EQ(coloured.Good("yes"), "\x1b[32myes\x1b[0m");
    EXPECT_EQ(coloured.Bad("no"), "\x1b[31mno\x1b[0m");
}

TEST(Style, OnlyATerminalIsColouredAndNotWithNoColor)
{
    EXPECT_TRUE(WantsColour(true, nullptr));
    EXPECT_TRUE(WantsColour(true, ""));
    EXPECT_FALSE(WantsColour(true, "1"));
    EXPECT_FALSE(WantsColour(false, nullptr));
}

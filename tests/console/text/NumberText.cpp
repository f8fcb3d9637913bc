#include "console/text/NumberText.h"

#include <gtest/gtest.h>

using namespace velox::console;

TEST(NumberText, TellsWhatIsUnusualAboutANumber)
{
    const struct
    {
        std::string_view text;
        bool isNumber;
        bool negative;
        bool hexadecimal;
        bool tooLarge;
        std::string_view rest;
    } cases[]{
        {"1033", true, false, false, false, ""},
        {"  1033 ", true, false, false, false, ""},
        {"1033abc", true, false, false, false, "abc"},
        {"0.5", true, false, false, false, ".5"},
        {"-1", true, true, false, false, ""},
        {"+7", true, false, false, false, ""},
        {"0x409", true, false, true, false, ""},
        {"0X409 x", true, false, true, false, "x"},
        {"4294967295", true, false, false, false, ""},
        {"4294967296", true, false, false, true, ""},
        {"99999999999999999999999", true, false, false, true, ""},
        {"", false, false, false, false, ""},
        {"abc", false, false, false, false, "abc"},
    };
    for (const auto& own : cases)
    {
        SCOPED_TRACE(own.text);
        const velox::console::NumberText number = ReadNumberText(own.text);
        EXPECT_EQ(number.isNumber, own.isNumber);
        EXPECT_EQ(number.negative, own.negative);
        EXPECT_EQ(number.hexadecimal, own.hexadecimal);
        EXPECT_EQ(number.tooLarge, own.tooLarge);
        EXPECT_EQ(number.rest, own.rest);
    }
}

#include "console/inspect/ThresholdText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace ThresholdTextTests
{

using namespace velox::console;

struct TextCase
{
    std::string_view content;
    bool isNumber;
    int32_t q8;
    std::string_view text;
    std::string_view rest;
};

constexpr int32_t Most = std::numeric_limits<int32_t>::max();
constexpr int32_t Least = std::numeric_limits<int32_t>::min();

// The Q8 numbers are those of the library for the same texts.
constexpr TextCase Cases[]{
    {"0.75", true, 192, "0.75", ""},
    {"0.75\r\n", true, 192, "0.75", ""},
    {" \t\n2e-1 ", true, 51, "2e-1", ""},
    {"-1.3", true, -333, "-1.3", ""},
    {"+1", true, 256, "+1", ""},
    {"0", true, 0, "0", ""},
    {"0.001953125", true, 1, "0.001953125", ""}, // half a step is rounded away from zero
    {"-0.001953125", true, -1, "-0.001953125", ""},
    {"0,75", true, 0, "0", ",75"},
    {"12 # twelve", true, 3072, "12", "# twelve"},
    {"1.5.2", true, 384, "1.5", ".2"},
    {"8388607.5", true, 2147483520, "8388607.5", ""},
    {"8388608", true, Most, "8388608", ""},
    {"-9000000", true, Least, "-9000000", ""},
    {"1e999", true, Most, "1e999", ""},
    {"-1e999", true, Least, "-1e999", ""},
    {"", false, 0, "", ""},
    {" \r\n", false, 0, "", ""},
    {"abc", false, 0, "", ""},
    {",75", false, 0, "", ""},
    {"nan", false, 0, "", ""},
    {"inf", false, 0, "", ""},
    {"\xEF\xBB\xBF"
     "0.75",
     false, 0, "", ""},
};

TEST(ThresholdText, IsReadAsTheLibraryReadsIt)
{
    for (const TextCase& own : Cases)
    {
        SCOPED_TRACE(own.content);
        const ThresholdText read = ReadThresholdText(own.content);
        EXPECT_EQ(read.isNumber, own.isNumber);
        EXPECT_EQ(read.q8, own.q8);
        EXPECT_EQ(read.text, own.text);
        EXPECT_EQ(read.rest, own.rest);
        const bool suspicious = !own.isNumber || !own.rest.empty() || own.q8 == Most || own.q8 == Least;
        EXPECT_EQ(!read.whatIsWrong.empty(), suspicious) << read.whatIsWrong;
    }
}

TEST(ThresholdText, SaysWhyThereIsNoNumber)
{
    const struct
    {
        std::string_view content;
        std::string_view why;
    } cases[]{{"", "it is empty"},
              {"abc", "does not begin with a number"},
              {",75", "begins with a comma"},
              {"\xEF\xBB\xBF"
               "0.75",
               "byte order mark"},
              {std::string_view("\xFF\xFE"
                                "0\0.\0",
                                6),
               "UTF-16"}};
    for (const auto& own : cases)
    {
        SCOPED_TRACE(own.why);
        EXPECT_THAT(ReadThresholdText(own.content).whatIsWrong, testing::HasSubstr(std::string(own.why)));
    }
}

TEST(ThresholdText, DecimalCommaIsNamed)
{
    EXPECT_EQ(ReadThresholdText("0,75").whatIsWrong, "the decimal comma in \"0,75\" ends the number: only 0 counts");
    EXPECT_EQ(ReadThresholdText("1, that is all").whatIsWrong, "what follows the number 1 is ignored");
}

TEST(ThresholdText, PlacesOfNumberAndRestAreGiven)
{
    const ThresholdText read = ReadThresholdText("  12   rest\n");
    EXPECT_EQ(read.offset, 2U);
    EXPECT_EQ(read.restOffset, 7U);
    EXPECT_EQ(read.rest, "rest");
}

TEST(ThresholdText, Q8NumberIsShownWithWhatItStandsFor)
{
    EXPECT_EQ(Q8Text(192), "192 (0.75)");
    EXPECT_EQ(Q8Text(-333), "-333 (-1.30078)");
}

} // namespace ThresholdTextTests

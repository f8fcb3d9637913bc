#include "console/text/Words.h"

#include <gtest/gtest.h>

#include <vector>

namespace WordsTests
{

using namespace velox::console;

TEST(Words, BlanksAtTheEndsAreTrimmedAndNothingElse)
{
    EXPECT_EQ(Trim(" \t\r\n\v\fa b\n"), "a b");
    EXPECT_EQ(Trim("a"), "a");
    EXPECT_EQ(Trim(" \n"), "");
    EXPECT_EQ(Trim(""), "");
}

TEST(Words, CapitalsDoNotTellWordsApart)
{
    EXPECT_TRUE(SameLetters("fwBlob", "FWBLOB"));
    EXPECT_TRUE(SameLetters("", ""));
    EXPECT_FALSE(SameLetters("fwBlob", "fwBlo"));
    EXPECT_FALSE(SameLetters("fwBlob", "fwBlab"));
}

TEST(Words, LinesAreCountedFromOne)
{
    EXPECT_EQ(LineAt("a\nb\n", 0), 1);
    EXPECT_EQ(LineAt("a\nb\n", 1), 1); // the line's end belongs to it
    EXPECT_EQ(LineAt("a\nb\n", 2), 2);
    EXPECT_EQ(LineAt("a\nb\n", 4), 3);
}

TEST(Words, BytesAreReadAsTheyAre)
{
    const std::vector<uint8_t> bytes{'a', 0, 0xFF};
    EXPECT_EQ(AsText(bytes), std::string_view("a\0\xFF", 3));
    EXPECT_EQ(AsText({}), "");
}

} // namespace WordsTests

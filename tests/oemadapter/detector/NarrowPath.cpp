#include "oemadapter/detector/NarrowPath.h"

#include <gtest/gtest.h>

namespace NarrowPathTests
{

using velox::oemadapter::NarrowPath;

TEST(NarrowPath, KeepsPlainLetters)
{
    EXPECT_EQ(NarrowPath(u"C:\\Velox\\configuration.xml"), "C:\\Velox\\configuration.xml");
}

TEST(NarrowPath, ThereIsNoneForALetterThatTheCodePageLacks)
{
    // Half of a pair is a letter in none.
    EXPECT_EQ(NarrowPath(std::u16string(u"C:\\") + char16_t{0xD800} + u".xml"), std::nullopt);
}

TEST(NarrowPath, ThereIsNoneForAnEmptyPath)
{
    EXPECT_EQ(NarrowPath(u""), std::nullopt);
}

} // namespace NarrowPathTests

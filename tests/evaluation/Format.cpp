#include "evaluation/Format.h"

#include <gtest/gtest.h>

namespace FormatTests
{

using namespace velox::evaluation;

TEST(Format, DigitsBehindThePointAreFixed)
{
    EXPECT_EQ(Fixed(1.25, 1), "1.2"); // to even
    EXPECT_EQ(Fixed(-2.0, 3), "-2.000");
    EXPECT_EQ(Fixed(0.6, 0), "1");
}

TEST(Format, FourDigitsCount)
{
    EXPECT_EQ(Short(0.0), "0");
    EXPECT_EQ(Short(12.3456), "12.35");
    EXPECT_EQ(Short(141800.0), "1.418e+05");
    EXPECT_EQ(Short(0.00072271), "0.0007227");
}

} // namespace FormatTests

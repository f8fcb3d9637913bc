#include "console/text/FieldLine.h"

#include <gtest/gtest.h>

using velox::console::FieldLine;

TEST(FieldLine, ValuesStandBelowEachOther)
{
    EXPECT_EQ(FieldLine("Model", "a.bin"), "Model:         a.bin\n");
    EXPECT_EQ(FieldLine("", "more"), ":              more\n");
    EXPECT_EQ(FieldLine("A rather long name", "x"), "A rather long name:x\n");
}

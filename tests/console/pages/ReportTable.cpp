#include "console/pages/ReportTable.h"

#include <gtest/gtest.h>

namespace ReportTableTests
{

using namespace velox::console;
using Texts = std::vector<std::string>;

TEST(ReportTable, HasAColumnForEachNameInTheOrderInWhichTheyCome)
{
    const std::vector<Entry> entries{{"a", "", Tone::Good, {{"", {}, "score", "1"}}},
                                     {"b", "", Tone::Good, {{"", {}, "level", "2"}, {"", {}, "score", "3"}, {"hidden", 4}}}};
    const ReportTable table = TableOf(entries);
    EXPECT_EQ(table.columns, (Texts{"", "Score", "Level"}));
    EXPECT_EQ(table.rows[0].cells, (Texts{"a", "1", ""}));
    EXPECT_EQ(table.rows[1].cells, (Texts{"b", "3", "2"}));
    EXPECT_EQ(table.rows[1].entry, &entries[1]);
}

TEST(ReportTable, WhatNobodyHasIsNoColumn)
{
    EXPECT_EQ(TableOf({{"a", "", Tone::Good, {{"block", Value(), "block", ""}}}}).columns, (Texts{""}));
}

TEST(ReportTable, StatusHasAColumnWhenThereIsOne)
{
    EXPECT_EQ(TableOf({{"", "accepted"}, {"", ""}}).columns, (Texts{""}));
    EXPECT_TRUE(TableOf({}).columns.empty());
}

TEST(ReportTable, AFactLineNamesWhatPeopleSee)
{
    EXPECT_EQ(FactLine({{"a", 1, "length", "1 s"}, {"b", 2}, {"", {}, "", "converted"}}), "length 1 s, converted");
}

TEST(ReportTable, CapitalsAreAsciiOnly)
{
    EXPECT_EQ(Capitalised("score"), "Score");
    EXPECT_EQ(Capitalised("\xC3\xA9"), "\xC3\xA9");
    EXPECT_EQ(Capitalised(""), "");
}

} // namespace ReportTableTests

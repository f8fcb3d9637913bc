#include "console/inspect/InspectionText.h"

#include "console/inspect/Inspection.h"
#include "tests/console/support/InspectionSamples.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using namespace velox::console;
using InspectionSamples::Bytes;
using testing::HasSubstr;
using testing::Not;

namespace
{

const Style Plain(false);

std::string TextOf(const Bytes& bytes, FieldsShown shown = FieldsShown::Grouped)
{
    return InspectionText("file.bin", Inspect(bytes), shown, Plain);
}

} // namespace

TEST(InspectionText, OffsetsAreHexadecimal)
{
    EXPECT_EQ(OffsetText(44), "0x002C");
    EXPECT_EQ(OffsetText(0x12345), "0x12345");
}

TEST(InspectionText, FirstLineNamesFileKindAndSize)
{
    EXPECT_THAT(TextOf(InspectionSamples::DetectionResult()), testing::StartsWith("file.bin: detection result, 60 bytes\n"));
}

TEST(InspectionText, EveryFieldHasALineWithOffsetValueAndMeaning)
{
    EXPECT_THAT(TextOf(InspectionSamples::DetectionResult()),
                testing::ContainsRegex("  0x0030        2  KeywordIdFw   1 +1: the key phrase\n"));
}

TEST(InspectionText, FieldsThatAreOneOfManyAreOneLineUnlessAllAreWanted)
{
    const Bytes model = InspectionSamples::Population();
    EXPECT_THAT(TextOf(model), HasSubstr("peak[*]"));
    EXPECT_THAT(TextOf(model), Not(HasSubstr("peak[2].score")));
    EXPECT_THAT(TextOf(model, FieldsShown::Every), HasSubstr("peak[2].score"));
    EXPECT_THAT(TextOf(model, FieldsShown::Every), Not(HasSubstr("peak[*]")));
}

TEST(InspectionText, ErrorsAreShownWithoutTheFieldsToo)
{
    Bytes block = InspectionSamples::ArmingPattern({});
    block[20] = 0;
    const std::string text = TextOf(block, FieldsShown::None);
    EXPECT_THAT(text, Not(HasSubstr("meaning")));
    EXPECT_THAT(text, HasSubstr("error at 0x0014, Signature"));
}

TEST(InspectionText, WrongFieldOfManyIsShownAndMarked)
{
    Bytes model = InspectionSamples::Population();
    const std::size_t offset = Inspect(model).Find("peak[2].score")->offset;
    InspectionSamples::PutU32(&model, offset, 0x7FC00000);
    const std::string text = TextOf(model);
    EXPECT_THAT(text, testing::ContainsRegex("\n! .*peak.2..score"));
    EXPECT_THAT(text, HasSubstr("error at " + OffsetText(offset) + ", peak[2].score: nan must be a finite number.\n"));
}

TEST(InspectionText, WhatCouldNotBeReadIsSaid)
{
    Bytes block = InspectionSamples::ArmingPattern({});
    block.resize(30);
    EXPECT_THAT(TextOf(block), HasSubstr("  0x001C to 0x001D (2 bytes) could not be read as fields.\n"));
}

TEST(InspectionText, ColoursAreUsedOnlyWhenWanted)
{
    Bytes block = InspectionSamples::ArmingPattern({});
    block[20] = 0;
    EXPECT_THAT(TextOf(block), Not(HasSubstr("\x1B[")));
    EXPECT_THAT(InspectionText("file.bin", Inspect(block), FieldsShown::Grouped, Style(true)), HasSubstr("\x1B["));
}

TEST(InspectionText, JsonTellsTheSame)
{
    Bytes block = InspectionSamples::ArmingPattern(InspectionSamples::FromText("firmware 1033"));
    block[32] = 7;
    const Inspection inspection = Inspect(block);
    const auto json = InspectionJson("file.bin", inspection);
    EXPECT_EQ(json["file"], "file.bin");
    EXPECT_EQ(json["kind"], "arming pattern");
    EXPECT_EQ(json["size"], 57);
    ASSERT_EQ(json["fields"].size(), inspection.fields.size());
    EXPECT_EQ(json["fields"][3]["path"], "KpdThreshold");
    EXPECT_EQ(json["fields"][3]["offset"], "0x0018");
    EXPECT_EQ(json["fields"][3]["value"], "192 (0.75)");
    EXPECT_EQ(json["fields"][3]["check"], "none");
    EXPECT_EQ(json["fields"][5]["check"], "wrong");
    EXPECT_EQ(json["fields"][6]["check"], "right");
    ASSERT_EQ(json["errors"].size(), 1U);
    EXPECT_EQ(json["errors"][0]["offset"], "0x0020");
    EXPECT_EQ(json["errors"][0]["path"], "Reserved1");
    EXPECT_TRUE(json["rest"].is_null());
}

TEST(InspectionText, DifferenceShowsBothValues)
{
    const Bytes first = InspectionSamples::ArmingPattern({});
    Bytes second = first;
    InspectionSamples::PutU32(&second, 24, 256);
    const InspectionDifference difference = Compare(Inspect(first), first, Inspect(second), second);
    EXPECT_EQ(DifferenceText(difference, Plain), "Differences:\n  0x0018 KpdThreshold: 192 (0.75) -> 256 (1)\n");
    const auto json = DifferenceJson(difference);
    EXPECT_EQ(json["same"], false);
    EXPECT_EQ(json["fields"][0]["path"], "KpdThreshold");
    EXPECT_EQ(json["fields"][0]["second"]["value"], "256 (1)");
}

TEST(InspectionText, DifferenceThatTheValuesHideSaysWhere)
{
    const Bytes first = InspectionSamples::ArmingPattern(Bytes(100, 0xAB));
    Bytes second = first;
    second[144 - 1] = 0;
    EXPECT_THAT(DifferenceText(Compare(Inspect(first), first, Inspect(second), second), Plain),
                HasSubstr("    1 bytes differ, the first at 0x008F\n"));
}

TEST(InspectionText, LongListsOfRangesAreCut)
{
    InspectionDifference difference;
    difference.ranges.assign(25, {16, 1});
    EXPECT_THAT(DifferenceText(difference, Plain), testing::EndsWith("  and 5 more ranges (--json lists them)\n"));
    EXPECT_EQ(DifferenceJson(difference)["ranges"].size(), 25U);
}

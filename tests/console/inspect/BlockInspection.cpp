#include "console/inspect/Inspection.h"

#include "tests/console/support/InspectionSamples.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace BlockInspectionTests
{

using namespace velox::console;
using InspectionSamples::Bytes;

struct Damage
{
    std::size_t offset;
    std::string path;
};

/// Every byte of these fields is checked: a change anywhere in them is an error with their path.
void ExpectChangesAreFound(const Bytes& good, const std::vector<Damage>& fields)
{
    for (const Damage& field : fields)
    {
        for (std::size_t i = 0; i < 4; ++i)
        {
            SCOPED_TRACE(testing::Message() << field.path << " byte " << i);
            Bytes damaged = good;
            damaged[field.offset + i] ^= 0x10U;
            const Inspection inspection = Inspect(damaged);
            ASSERT_NE(inspection.FirstError(), nullptr);
            EXPECT_EQ(inspection.FirstError()->path, field.path);
            EXPECT_EQ(inspection.FirstError()->offset, field.offset);
        }
    }
}

TEST(BlockInspection, ArmingPatternShowsEveryField)
{
    // The example of docs/firmware-blocks.md.
    const Inspection inspection = Inspect(InspectionSamples::ArmingPattern(InspectionSamples::FromText("firmware 1033")));
    const struct
    {
        std::string path;
        std::size_t offset;
        std::string value;
    } fields[]{{"Size", 0x00, "57"},
               {"PatternType", 0x04, "{00112233-4455-6677-8899-AABBCCDDEEFF}"},
               {"Signature", 0x14, "0xAA550001"},
               {"KpdThreshold", 0x18, "192 (0.75)"},
               {"Limit", 0x1C, "0x7FFFFFFF"},
               {"Reserved1", 0x20, "0"},
               {"Reserved2", 0x24, "0"},
               {"ModelSize", 0x28, "13"},
               {"ModelData", 0x2C, "66 69 72 6D 77 61 72 65 20 31 30 33 33"}};
    ASSERT_EQ(inspection.fields.size(), std::size(fields));
    for (std::size_t i = 0; i < std::size(fields); ++i)
    {
        EXPECT_EQ(inspection.fields[i].path, fields[i].path);
        EXPECT_EQ(inspection.fields[i].offset, fields[i].offset);
        EXPECT_EQ(inspection.fields[i].value, fields[i].value);
    }
}

TEST(BlockInspection, ChangeOfACheckedFieldIsFound)
{
    ExpectChangesAreFound(
        InspectionSamples::ArmingPattern(InspectionSamples::FromText("firmware 1033")),
        {{0, "Size"}, {20, "Signature"}, {28, "Limit"}, {32, "Reserved1"}, {36, "Reserved2"}, {40, "ModelSize"}});
    ExpectChangesAreFound(InspectionSamples::DetectionResult(), {{0, "Size"}});
}

TEST(BlockInspection, ThresholdKeepsItsSign)
{
    Bytes block = InspectionSamples::ArmingPattern({});
    InspectionSamples::PutU32(&block, 24, 0xFFFFFEB3);
    const Inspection inspection = Inspect(block);
    EXPECT_EQ(inspection.Find("KpdThreshold")->value, "-333 (-1.30078)");
    EXPECT_EQ(inspection.FirstError(), nullptr) << "the library writes it";
}

TEST(BlockInspection, WhatTheFirmwareWouldRefuseIsNoted)
{
    Bytes block = InspectionSamples::ArmingPattern(InspectionSamples::FirmwareModel());
    EXPECT_THAT(Inspect(block).notes, testing::IsEmpty());
    InspectionSamples::PutU32(&block, 24, 0xFFFFFEB3);
    EXPECT_THAT(Inspect(block).notes, testing::ElementsAre(testing::HasSubstr("refuses it at KpdThreshold")));
    EXPECT_THAT(Inspect(InspectionSamples::ArmingPattern(Bytes(40, 7))).notes,
                testing::ElementsAre(testing::HasSubstr("it is no firmware model")));
}

TEST(BlockInspection, ModelOfTheStandInIsReadAndItsDamageHasAPlace)
{
    Bytes block = InspectionSamples::ArmingPattern(InspectionSamples::UserModel());
    const Inspection inspection = Inspect(block);
    EXPECT_EQ(inspection.Find("ModelData.Kind")->offset, 0x2CU);
    EXPECT_TRUE(inspection.ofUser);
    block.back() ^= 1U;
    EXPECT_EQ(Inspect(block).FirstError()->path, "ModelData.Checksum");
}

TEST(BlockInspection, UserModelOfAnotherEngineStaysOpaque)
{
    Bytes model = InspectionSamples::FromText("VWOV, and what a closed engine writes");
    const Inspection inspection = Inspect(InspectionSamples::ArmingPattern(model));
    EXPECT_EQ(inspection.FirstError(), nullptr);
    ASSERT_NE(inspection.Find("ModelData"), nullptr);
    EXPECT_EQ(inspection.Find("ModelData")->size, model.size());
}

TEST(BlockInspection, DetectionResultShowsEveryField)
{
    const Inspection inspection = Inspect(InspectionSamples::DetectionResult());
    EXPECT_EQ(inspection.Find("KeywordStart")->value, "10000000");
    EXPECT_EQ(inspection.Find("KeywordStart")->offset, 0x1CU);
    EXPECT_EQ(inspection.Find("KeywordEnd")->offset, 0x24U);
    EXPECT_EQ(inspection.Find("KeywordIdFw")->value, "1");
    EXPECT_EQ(inspection.Find("KeywordIdFw")->offset, 0x30U);
    EXPECT_EQ(inspection.Find("KpdScore")->value, "230 (0.898438)");
    EXPECT_EQ(inspection.Find("KpdScore")->offset, 0x34U);
    EXPECT_THAT(inspection.notes, testing::ElementsAre(testing::HasSubstr("lasts 8000000 counts: 0.800 s")));
}

TEST(BlockInspection, LongerDetectionResultIsRightWhenItsSizeSaysSo)
{
    Bytes block = InspectionSamples::DetectionResult(12);
    EXPECT_EQ(Inspect(block).FirstError(), nullptr);
    EXPECT_EQ(Inspect(block).Find("NotRead60")->size, 12U);
    InspectionSamples::PutU32(&block, 0, 60);
    EXPECT_EQ(Inspect(block).FirstError()->path, "Size");
}

TEST(BlockInspection, TimesThatCannotBeAreNoted)
{
    Bytes block = InspectionSamples::DetectionResult();
    InspectionSamples::PutU32(&block, 36, 9'000'000);
    EXPECT_THAT(Inspect(block).notes, testing::ElementsAre(testing::HasSubstr("ends before it starts")));
    InspectionSamples::PutU32(&block, 36, 0);
    EXPECT_THAT(Inspect(block).notes, testing::ElementsAre(testing::HasSubstr("not known")));
}

TEST(BlockInspection, OtherKeywordIsNoted)
{
    Bytes block = InspectionSamples::DetectionResult();
    block[48] = 2;
    EXPECT_THAT(Inspect(block).notes, testing::Contains(testing::HasSubstr("KeywordIdFw 2 is no keyword")));
}

TEST(BlockInspection, BeginningThatBothBlocksShareSaysThatItIsTooShort)
{
    Bytes block = InspectionSamples::ArmingPattern({});
    block.resize(20);
    const Inspection inspection = Inspect(block);
    EXPECT_EQ(inspection.kind, FileKind::BlockHead);
    EXPECT_NE(inspection.Find("PatternType"), nullptr);
    EXPECT_THAT(inspection.Find("PatternType")->error, testing::HasSubstr("begin to differ"));
}

} // namespace BlockInspectionTests

#include "console/inspect/Inspection.h"

#include "tests/console/support/InspectionSamples.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

using namespace velox::console;
using InspectionSamples::Bytes;

namespace
{

/// What holds for every file, however damaged: the fields follow each other from the beginning without gaps, and what is behind
/// them is the rest; every error lies in the file and has a path; wrong fields and errors belong together.
void ExpectWellFormed(const Inspection& inspection, std::size_t size)
{
    std::size_t position = 0;
    for (const InspectedField& field : inspection.fields)
    {
        ASSERT_EQ(field.offset, position) << field.path;
        position += field.size;
        if (field.check == FieldCheck::Wrong)
        {
            ASSERT_TRUE(std::any_of(inspection.errors.begin(), inspection.errors.end(), [&](const InspectionError& error) {
                return error.path == field.path;
            })) << field.path;
        }
    }
    ASSERT_EQ(inspection.rest ? inspection.rest->offset : size, position);
    if (inspection.rest)
    {
        ASSERT_EQ(inspection.rest->offset + inspection.rest->size, size);
        ASSERT_TRUE(inspection.kind == FileKind::Unknown || !inspection.errors.empty()) << "a rest without an error";
    }
    for (const InspectionError& error : inspection.errors)
    {
        ASSERT_LE(error.offset, size);
        ASSERT_FALSE(error.path.empty());
        ASSERT_FALSE(error.message.empty());
    }
}

/// The first bytes in a block of their own, so that the sanitizer sees what is read behind them.
Bytes Prefix(const Bytes& bytes, std::size_t size)
{
    return {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size)};
}

/// Enough to see every field of a small file; of a large one every byte at its beginning, and some further on.
std::vector<std::size_t> Places(std::size_t size)
{
    constexpr std::size_t Every = 400;
    constexpr std::size_t Stride = 211;
    std::vector<std::size_t> places;
    for (std::size_t place = 0; place < size; place += place < Every ? 1 : Stride)
    {
        places.push_back(place);
    }
    return places;
}

} // namespace

TEST(Inspection, EveryKindIsRecognisedAndRight)
{
    for (const auto& sample : InspectionSamples::All())
    {
        SCOPED_TRACE(sample.name);
        const Inspection inspection = Inspect(sample.bytes);
        EXPECT_EQ(inspection.kind, sample.kind);
        EXPECT_TRUE(inspection.errors.empty()) << inspection.errors[0].path << ": " << inspection.errors[0].message;
        EXPECT_FALSE(inspection.rest);
        ExpectWellFormed(inspection, sample.bytes.size());
    }
}

TEST(Inspection, EveryPrefixKeepsWhatWasParsedAndSaysWhereItEnds)
{
    constexpr std::size_t Recognisable = 4;
    for (const auto& sample : InspectionSamples::All())
    {
        SCOPED_TRACE(sample.name);
        const Inspection whole = Inspect(sample.bytes);
        for (const std::size_t size : Places(sample.bytes.size()))
        {
            SCOPED_TRACE(size);
            const Inspection cut = Inspect(Prefix(sample.bytes, size));
            ExpectWellFormed(cut, size);
            if (size < Recognisable)
            {
                continue;
            }
            EXPECT_FALSE(cut.errors.empty());
            ASSERT_FALSE(cut.fields.empty());
            for (std::size_t i = 0; i + 1 < cut.fields.size(); ++i)
            {
                EXPECT_EQ(cut.fields[i].path, whole.fields[i].path);
                EXPECT_EQ(cut.fields[i].value, whole.fields[i].value);
            }
        }
    }
}

TEST(Inspection, EveryChangedByteIsSurvived)
{
    for (const auto& sample : InspectionSamples::All())
    {
        SCOPED_TRACE(sample.name);
        const bool model = sample.kind != FileKind::ArmingPattern && sample.kind != FileKind::DetectionResult;
        for (const std::size_t place : Places(sample.bytes.size()))
        {
            for (const uint8_t change : {uint8_t{0x01}, uint8_t{0xFF}})
            {
                SCOPED_TRACE(testing::Message() << place << " ^ " << +change);
                Bytes damaged = sample.bytes;
                damaged[place] ^= change;
                const Inspection inspection = Inspect(damaged);
                ExpectWellFormed(inspection, damaged.size());
                if (model && inspection.kind == sample.kind)
                {
                    EXPECT_FALSE(inspection.errors.empty()) << "a model has a checksum";
                }
            }
        }
    }
}

TEST(Inspection, TextIsAThresholdFile)
{
    EXPECT_EQ(Inspect(InspectionSamples::FromText("0.75\r\n")).kind, FileKind::Threshold);
    EXPECT_EQ(Inspect(InspectionSamples::FromText("abc")).kind, FileKind::Threshold);
    EXPECT_EQ(Inspect(InspectionSamples::FromText("\xFF\xFE"
                                                  "0\0.\0"))
                  .kind,
              FileKind::Threshold);
}

TEST(Inspection, ThresholdIsShownWithItsQ8Number)
{
    const Inspection inspection = Inspect(InspectionSamples::FromText("  0.75\r\n"));
    ASSERT_NE(inspection.Find("number"), nullptr);
    EXPECT_EQ(inspection.Find("number")->offset, 2U);
    EXPECT_EQ(inspection.Find("number")->value, "0.75");
    EXPECT_THAT(inspection.Find("number")->meaning, testing::HasSubstr("192 (0.75)"));
    EXPECT_TRUE(inspection.errors.empty());
    ExpectWellFormed(inspection, 8);
}

TEST(Inspection, ThresholdThatIsNoNumberIsAnError)
{
    for (const std::string_view text : {"abc", "   ", ",75",
                                        "\xEF\xBB\xBF"
                                        "0.75"})
    {
        SCOPED_TRACE(text);
        const Inspection inspection = Inspect(InspectionSamples::FromText(text));
        ASSERT_EQ(inspection.kind, FileKind::Threshold);
        ASSERT_EQ(inspection.errors.size(), 1U);
        EXPECT_THAT(inspection.errors[0].message, testing::EndsWith("The library takes 0 without a message."));
        ExpectWellFormed(inspection, text.size());
    }
}

TEST(Inspection, WhatFollowsAThresholdIsAnErrorWhereItBegins)
{
    const Inspection inspection = Inspect(InspectionSamples::FromText("0,75\n"));
    ASSERT_EQ(inspection.errors.size(), 1U);
    EXPECT_EQ(inspection.errors[0].offset, 1U);
    EXPECT_EQ(inspection.errors[0].path, "(rest)");
    ExpectWellFormed(inspection, 5);
}

TEST(Inspection, ThresholdOutsideOfTheScoresIsNoted)
{
    EXPECT_THAT(Inspect(InspectionSamples::FromText("-1")).notes, testing::ElementsAre(testing::HasSubstr("every one")));
    EXPECT_THAT(Inspect(InspectionSamples::FromText("256")).notes, testing::ElementsAre(testing::HasSubstr("none")));
    EXPECT_THAT(Inspect(InspectionSamples::FromText("255")).notes, testing::IsEmpty());
}

TEST(Inspection, FilesForOtherCommandsAreNamed)
{
    const struct
    {
        std::string_view content;
        std::string_view hint;
    } cases[]{{"RIFF\x10\0\0\0WAVE", "verify"}, {"<?xml version=\"1.0\"?>", "doctor"}, {"MZ\x90", "DLL"}};
    for (const auto& other : cases)
    {
        SCOPED_TRACE(other.content);
        const Inspection inspection = Inspect(InspectionSamples::FromText(other.content));
        EXPECT_EQ(inspection.kind, FileKind::Unknown);
        EXPECT_THAT(inspection.notes, testing::Contains(testing::HasSubstr(std::string(other.hint))));
    }
}

TEST(Inspection, EmptyFileIsItsOwnKind)
{
    const Inspection inspection = Inspect({});
    EXPECT_EQ(inspection.kind, FileKind::Empty);
    EXPECT_TRUE(inspection.fields.empty());
    EXPECT_THAT(inspection.notes, testing::ElementsAre(testing::HasSubstr("predefined model is armed")));
}

TEST(Inspection, OtherBytesAreUnknown)
{
    const Inspection inspection = Inspect(Bytes(500, 0));
    EXPECT_EQ(inspection.kind, FileKind::Unknown);
    ExpectWellFormed(inspection, 500);
}

#include "console/inspect/Inspection.h"

#include "tests/console/support/InspectionSamples.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <utility>

namespace InspectionTests
{

using namespace velox::console;
using InspectionSamples::Bytes;

/// What holds for every file, however damaged: the fields follow each other from the beginning to the end without gaps.
void ExpectWellFormed(const Inspection& inspection, std::size_t size)
{
    std::size_t position = 0;
    for (const InspectedField& field : inspection.fields)
    {
        ASSERT_EQ(field.offset, position) << field.path;
        ASSERT_FALSE(field.path.empty());
        position += field.size;
    }
    ASSERT_EQ(position, size);
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

TEST(Inspection, EveryKindIsRecognisedAndRight)
{
    for (const auto& sample : InspectionSamples::All())
    {
        SCOPED_TRACE(sample.name);
        const Inspection inspection = Inspect(sample.bytes);
        EXPECT_EQ(inspection.kind, sample.kind);
        EXPECT_EQ(inspection.FirstError(), nullptr) << inspection.FirstError()->path << ": " << inspection.FirstError()->error;
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
            EXPECT_NE(cut.FirstError(), nullptr);
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
                    EXPECT_NE(inspection.FirstError(), nullptr) << "a model has a checksum";
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
    ASSERT_EQ(inspection.fields.size(), 1U);
    EXPECT_EQ(inspection.fields[0].value, "0.75");
    EXPECT_THAT(inspection.fields[0].meaning, testing::HasSubstr("192 (0.75)"));
    EXPECT_EQ(inspection.FirstError(), nullptr);
}

TEST(Inspection, ThresholdThatIsNoNumberOrMoreIsAnError)
{
    const std::pair<std::string_view, std::string_view> cases[]{{"abc", "does not begin with a number"},
                                                                {"   ", "is empty"},
                                                                {",75", "begins with a comma"},
                                                                {"0,75\n", "decimal comma"},
                                                                {"100 old", "is ignored"},
                                                                {"\xEF\xBB\xBF"
                                                                 "0.75",
                                                                 "byte order mark"}};
    for (const auto& [text, error] : cases)
    {
        SCOPED_TRACE(text);
        const Inspection inspection = Inspect(InspectionSamples::FromText(text));
        ASSERT_EQ(inspection.kind, FileKind::Threshold);
        ASSERT_NE(inspection.FirstError(), nullptr);
        EXPECT_THAT(inspection.FirstError()->error, testing::HasSubstr(std::string(error)));
        ExpectWellFormed(inspection, text.size());
    }
    EXPECT_EQ(Inspect(InspectionSamples::FromText("abc")).fields[0].meaning, "the library takes 0 without a message");
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

TEST(Inspection, EveryKindHasANameOfItsOwn)
{
    std::set<std::string_view> names;
    for (int kind = 0; kind <= static_cast<int>(FileKind::Threshold); ++kind)
    {
        names.insert(FileKindName(static_cast<FileKind>(kind)));
    }
    EXPECT_EQ(names.size(), 10U);
    EXPECT_EQ(FileKindName(FileKind::ArmingPattern), "arming pattern");
    EXPECT_EQ(FileKindName(FileKind::Threshold), "threshold file");
}

TEST(Inspection, OffsetsAreHexadecimal)
{
    EXPECT_EQ(OffsetText(44), "0x002C");
    EXPECT_EQ(OffsetText(0x12345), "0x12345");
}

} // namespace InspectionTests

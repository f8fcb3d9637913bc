#include "console/inspect/FieldReader.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace velox::console;

namespace
{

using Bytes = std::vector<uint8_t>;

/// A reader over bytes, and what it recorded.
struct Reading
{
    explicit Reading(Bytes content) : bytes(std::move(content)), reader(bytes, &inspection)
    {
    }

    Bytes bytes;
    Inspection inspection;
    FieldReader reader;
};

} // namespace

TEST(FieldReader, IntegersAreLittleEndianUnlessTheirNameSaysOtherwise)
{
    Reading reading({0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x01, 0x02, 0x01, 0, 0, 0, 0, 0, 0, 0x80});
    EXPECT_EQ(reading.reader.U32("a", ""), 0x04030201U);
    EXPECT_EQ(reading.reader.U16("b", ""), 0x0605U);
    EXPECT_EQ(reading.reader.BigEndianU16("c", ""), 0x0102U);
    EXPECT_EQ(reading.reader.U64("d", ""), 0x8000000000000001U);
}

TEST(FieldReader, FieldsHavePathOffsetSizeAndValue)
{
    Reading reading({1, 0, 0, 0, 2, 0, 0, 0, 0xAA});
    reading.reader.U32("first", "meaning");
    {
        const FieldReader::Section outer(&reading.reader, "outer");
        const FieldReader::Section inner(&reading.reader, "inner[0]");
        reading.reader.Hex32("second", "");
    }
    reading.reader.Bytes("third", 1, "");

    ASSERT_EQ(reading.inspection.fields.size(), 3U);
    EXPECT_EQ(reading.inspection.fields[0].meaning, "meaning");
    EXPECT_EQ(reading.inspection.fields[1].path, "outer.inner[0].second");
    EXPECT_EQ(reading.inspection.fields[1].offset, 4U);
    EXPECT_EQ(reading.inspection.fields[1].size, 4U);
    EXPECT_EQ(reading.inspection.fields[1].value, "0x00000002");
    EXPECT_EQ(reading.inspection.fields[2].path, "third");
    EXPECT_EQ(reading.inspection.fields[2].value, "AA");
}

TEST(FieldReader, GuidIsWrittenAsItIsSpoken)
{
    Reading reading({0x33, 0x22, 0x11, 0x00, 0x55, 0x44, 0x77, 0x66, 0x88, 0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF});
    EXPECT_EQ(reading.reader.Guid("guid", ""), "{00112233-4455-6677-8899-AABBCCDDEEFF}");
}

TEST(FieldReader, FieldThatIsCutOffIsAnErrorAtItsBeginning)
{
    Reading reading({1, 0, 0, 0, 2, 0});
    reading.reader.U32("whole", "");
    EXPECT_THROW(reading.reader.U32("cut", ""), ReadingStopped);
    ASSERT_EQ(reading.inspection.errors.size(), 1U);
    EXPECT_EQ(reading.inspection.errors[0].offset, 4U);
    EXPECT_EQ(reading.inspection.errors[0].path, "cut");
    EXPECT_EQ(reading.inspection.errors[0].message, "Only 2 of the field's 4 bytes are there.");
    EXPECT_EQ(reading.inspection.fields.size(), 1U);
}

TEST(FieldReader, BoundsEndTheReadingEarlier)
{
    Reading reading(Bytes(8));
    {
        const FieldReader::Bounds bounds(&reading.reader, 2);
        EXPECT_EQ(reading.reader.Left(), 2U);
        EXPECT_THROW(reading.reader.U32("cut", ""), ReadingStopped);
    }
    EXPECT_EQ(reading.reader.Left(), 8U);
}

TEST(FieldReader, BoundsBeyondTheEndAreTheEnd)
{
    Reading reading(Bytes(8));
    const FieldReader::Bounds bounds(&reading.reader, std::numeric_limits<std::size_t>::max());
    EXPECT_EQ(reading.reader.Left(), 8U);
}

TEST(FieldReader, CountOutsideOfItsRangeStops)
{
    for (const uint8_t count : {uint8_t{0}, uint8_t{4}})
    {
        SCOPED_TRACE(+count);
        Reading reading({count, 0, 0, 0});
        EXPECT_THROW(reading.reader.Count("count", 1, 3, ""), ReadingStopped);
        EXPECT_EQ(reading.inspection.fields[0].check, FieldCheck::Wrong);
        EXPECT_EQ(reading.inspection.errors[0].path, "count");
    }
    Reading reading({3, 0, 0, 0});
    EXPECT_EQ(reading.reader.Count("count", 1, 3, ""), 3U);
    EXPECT_EQ(reading.inspection.fields[0].check, FieldCheck::Right);
}

TEST(FieldReader, NumberThatIsNotAllowedIsAnErrorAtItsOwnOffset)
{
    // 1, -1, and a NaN.
    const Bytes numbers{0, 0, 0x80, 0x3F, 0, 0, 0x80, 0xBF, 0, 0, 0xC0, 0x7F};
    Reading any(numbers);
    any.reader.F32s("any", 3, "");
    ASSERT_EQ(any.inspection.errors.size(), 1U);
    EXPECT_EQ(any.inspection.errors[0].offset, 8U);

    Reading positive(numbers);
    positive.reader.F32s("positive", 3, "", FieldReader::Numbers::Positive);
    ASSERT_EQ(positive.inspection.errors.size(), 1U);
    EXPECT_EQ(positive.inspection.errors[0].offset, 4U);
    EXPECT_EQ(positive.inspection.errors[0].message, "Number 1, -1, must be a finite number above 0.");
}

TEST(FieldReader, QuantisedNumbersAreStepsTimesTheirStep)
{
    // A step of 0.5, then 4 and -4 steps.
    Reading reading({0, 0, 0, 0x3F, 4, 0, 0xFC, 0xFF});
    reading.reader.Quantised("q", 1, 2, "");
    EXPECT_EQ(reading.inspection.fields[0].value, "2 numbers, -2 to 2");
    EXPECT_EQ(reading.inspection.fields[0].check, FieldCheck::Right);
}

TEST(FieldReader, StepThatOverflowsIsAnError)
{
    Reading reading({0xFF, 0xFF, 0x7F, 0x7F, 1, 0}); // the largest float
    reading.reader.Quantised("q", 1, 1, "");
    EXPECT_EQ(reading.inspection.errors.size(), 1U);
}

TEST(FieldReader, OutermostGroupCounts)
{
    Reading reading(Bytes(8));
    const FieldReader::Section section(&reading.reader, "list");
    {
        const FieldReader::Group group(&reading.reader, "item[*]");
        const FieldReader::Group inner(&reading.reader, "part[*]");
        reading.reader.U32("a", "");
    }
    reading.reader.U32("b", "");
    EXPECT_EQ(reading.inspection.fields[0].group, "list.item[*]");
    EXPECT_EQ(reading.inspection.fields[1].group, "");
}

TEST(FieldReader, BytesBeforeTheEndAreAnError)
{
    Reading reading(Bytes(6));
    reading.reader.U32("a", "");
    reading.reader.ExpectEnd("Two too many.");
    reading.reader.ExpectEnd("Nothing any more.");
    ASSERT_EQ(reading.inspection.errors.size(), 1U);
    EXPECT_EQ(reading.inspection.errors[0].offset, 4U);
    EXPECT_EQ(reading.inspection.errors[0].message, "Two too many.");
    EXPECT_EQ(reading.reader.Left(), 0U);
}

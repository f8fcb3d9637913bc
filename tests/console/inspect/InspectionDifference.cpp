#include "console/inspect/InspectionDifference.h"

#include "console/inspect/Inspection.h"
#include "tests/console/support/InspectionSamples.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace velox::console;
using InspectionSamples::Bytes;

namespace
{

InspectionDifference CompareBytes(const Bytes& first, const Bytes& second)
{
    return Compare(Inspect(first), first, Inspect(second), second);
}

} // namespace

TEST(InspectionDifference, SameBytesAreTheSame)
{
    for (const auto& sample : InspectionSamples::All())
    {
        SCOPED_TRACE(sample.name);
        const InspectionDifference difference = CompareBytes(sample.bytes, sample.bytes);
        EXPECT_TRUE(difference.same);
        EXPECT_TRUE(difference.fields.empty());
    }
}

TEST(InspectionDifference, EveryChangedByteIsFoundInItsField)
{
    const Bytes first = InspectionSamples::DetectionResult();
    for (std::size_t place = 0; place < first.size(); ++place)
    {
        SCOPED_TRACE(place);
        Bytes second = first;
        second[place] ^= 1U;
        const InspectionDifference difference = CompareBytes(first, second);
        EXPECT_FALSE(difference.same);
        ASSERT_EQ(difference.fields.size(), 1U);
        const FieldDifference& field = difference.fields[0];
        EXPECT_LE(field.first.offset, place);
        EXPECT_LT(place, field.first.offset + field.first.size);
        EXPECT_EQ(field.changedBytes, 1U);
        EXPECT_EQ(field.firstChange, place);
    }
}

TEST(InspectionDifference, FieldIsComparedWhereverItStands)
{
    const Bytes shorter = InspectionSamples::ArmingPattern(InspectionSamples::FromText("one"));
    const Bytes longer = InspectionSamples::ArmingPattern(InspectionSamples::FromText("three"));
    const InspectionDifference difference = CompareBytes(shorter, longer);
    ASSERT_EQ(difference.fields.size(), 3U);
    EXPECT_EQ(difference.fields[0].path, "Size");
    EXPECT_EQ(difference.fields[0].first.value, "47");
    EXPECT_EQ(difference.fields[0].second.value, "49");
    EXPECT_EQ(difference.fields[2].path, "ModelData");
    EXPECT_EQ(difference.fields[2].changedBytes, 3U);
}

TEST(InspectionDifference, FieldsOfOneFileOnlyAreListed)
{
    const InspectionDifference difference = CompareBytes(InspectionSamples::FirmwareModel(), InspectionSamples::UserModel());
    EXPECT_TRUE(difference.onlyInFirst.empty());
    EXPECT_THAT(difference.onlyInSecond, testing::Contains("speaker.threshold"));
}

TEST(InspectionDifference, BytesBeyondTheFieldsAreRanges)
{
    // Other versions: what is behind the version is no fields.
    Bytes first = InspectionSamples::FirmwareModel();
    InspectionSamples::PutU32(&first, 4, 9);
    Bytes second = first;
    second[20] ^= 1U;
    second[21] ^= 1U;
    second[40] ^= 1U;
    second.push_back(0);
    const InspectionDifference difference = CompareBytes(first, second);
    ASSERT_EQ(difference.ranges.size(), 3U);
    EXPECT_EQ(difference.ranges[0].offset, 20U);
    EXPECT_EQ(difference.ranges[0].size, 2U);
    EXPECT_EQ(difference.ranges[1].offset, 40U);
    EXPECT_EQ(difference.ranges[2].offset, first.size());
}

TEST(InspectionDifference, FilesOfDifferentKindsAreComparedByteByByte)
{
    const Bytes first = InspectionSamples::DetectionResult();
    const InspectionDifference difference = CompareBytes(first, InspectionSamples::ArmingPattern({}));
    EXPECT_TRUE(difference.fields.empty());
    ASSERT_FALSE(difference.ranges.empty());
    EXPECT_EQ(difference.ranges[0].offset, 0U); // the sizes, 60 and 44
    EXPECT_EQ(difference.ranges.back().offset + difference.ranges.back().size, first.size());
}

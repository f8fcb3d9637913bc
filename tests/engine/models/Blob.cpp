#include "engine/models/Blob.h"

#include "tests/engine/support/BlobDamage.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <string_view>

namespace BlobTests
{

using namespace velox::engine;
using testing::ElementsAre;

constexpr BlobKind Kind = BlobKind::Population;

struct Opened
{
    Status status;
    BlobReader reader;
};

/// @param blob  must outlive what is returned
Opened Open(const std::vector<uint8_t>& blob)
{
    Status status = Status::Success;
    const BlobReader reader(Kind, blob.data(), &status);
    return {status, reader};
}

TEST(Blob, ChecksumIsThatOfThePublishedCheckValue)
{
    constexpr std::string_view Check = "123456789";
    EXPECT_EQ(Crc32(std::vector<uint8_t>(Check.begin(), Check.end())), 0xCBF43926U);
    EXPECT_EQ(Crc32({}), 0U);
}

TEST(Blob, HeaderAndFieldsStandAsDocumented)
{
    BlobWriter writer(Kind);
    writer.U32(0x04030201);
    writer.F32(1.0F);
    const std::vector<uint8_t> blob = writer.Finish();
    const std::vector<uint8_t> contents{1, 2, 3, 4, 0, 0, 0x80, 0x3F};
    const uint32_t crc = Crc32(contents);
    std::vector<uint8_t> expected{'V', 'W', 'Z', 'N', 2, 0, 0, 0, 24, 0, 0, 0};
    for (unsigned int shift = 0; shift < 32; shift += 8)
    {
        expected.push_back(static_cast<uint8_t>(crc >> shift));
    }
    expected.insert(expected.end(), contents.begin(), contents.end());
    EXPECT_EQ(blob, expected);
    EXPECT_EQ(BlobLength(blob.data()), 24U);
    EXPECT_TRUE(IsBlob(blob.data(), Kind));
    EXPECT_FALSE(IsBlob(blob.data(), BlobKind::Firmware));
}

TEST(Blob, KindsBeginWithTheirFourCharacters)
{
    const auto begins = [](BlobKind kind, std::string_view text) {
        const std::vector<uint8_t> blob = BlobWriter(kind).Finish();
        return std::equal(text.begin(), text.end(), blob.begin());
    };
    EXPECT_TRUE(begins(BlobKind::AcousticModel, "VWAM"));
    EXPECT_TRUE(begins(BlobKind::Population, "VWZN"));
    EXPECT_TRUE(begins(BlobKind::PhraseModel, "VWPM"));
    EXPECT_TRUE(begins(BlobKind::Firmware, "VWOV"));
}

TEST(Blob, FieldsComeBackAsTheyWereWritten)
{
    BlobWriter writer(Kind);
    writer.U32(7);
    writer.F32s(std::vector{-1.5F, 2.25F});
    writer.Nested(std::vector<uint8_t>{9, 8});
    writer.Quantised(std::vector{32767.0F, -2.0F, 0.0F});
    const std::vector<uint8_t> blob = writer.Finish();
    auto [status, reader] = Open(blob);
    ASSERT_EQ(status, Status::Success);
    EXPECT_EQ(reader.Count(7), 7U);
    std::vector<float> floats(2);
    reader.F32s(floats);
    EXPECT_THAT(floats, ElementsAre(-1.5F, 2.25F));
    EXPECT_THAT(reader.Nested(), ElementsAre(9, 8));
    EXPECT_EQ(reader.Finish(), Status::MalformedBlob) << "three values are left";
    std::vector<float> quantised(3);
    reader.Quantised(quantised); // the largest is 32767 steps, so a step is 1
    EXPECT_THAT(quantised, ElementsAre(32767.0F, -2.0F, 0.0F));
    EXPECT_EQ(reader.Finish(), Status::Success);
}

TEST(Blob, QuantisationLosesAtMostHalfAStep)
{
    RandomStream random(5);
    std::vector<float> values(1000);
    for (float& value : values)
    {
        value = static_cast<float>(3.0 * random.Normal());
    }
    BlobWriter writer(Kind);
    writer.Quantised(values);
    const std::vector<uint8_t> blob = writer.Finish();
    auto [status, reader] = Open(blob);
    std::vector<float> read(values.size());
    reader.Quantised(read);
    ASSERT_EQ(reader.Finish(), Status::Success);

    float largest = 0.0F;
    for (const float value : values)
    {
        largest = std::max(largest, std::abs(value));
    }
    const float halfStep = largest / 32767.0F / 2.0F;
    for (std::size_t i = 0; i < values.size(); ++i)
    {
        EXPECT_NEAR(read[i], values[i], halfStep * 1.01F);
    }
}

TEST(Blob, AllZerosAreQuantisedToZeros)
{
    BlobWriter writer(Kind);
    writer.Quantised(std::vector(2, 0.0F));
    const std::vector<uint8_t> blob = writer.Finish();
    auto [status, reader] = Open(blob);
    std::vector<float> read(2, 1.0F);
    reader.Quantised(read);
    EXPECT_THAT(read, ElementsAre(0.0F, 0.0F));
}

TEST(Blob, ReadsPastTheEndGiveZerosAndAreReported)
{
    BlobWriter writer(Kind);
    writer.U32(3);
    const std::vector<uint8_t> blob = writer.Finish();
    auto [status, reader] = Open(blob);
    EXPECT_EQ(reader.U32(), 3U);
    EXPECT_EQ(reader.U32(), 0U);
    EXPECT_EQ(reader.Finish(), Status::MalformedBlob);
}

TEST(Blob, CountsBeyondTheirBoundMakeTheModelMalformed)
{
    BlobWriter writer(Kind);
    writer.U32(3);
    const std::vector<uint8_t> blob = writer.Finish();
    auto [status, reader] = Open(blob);
    EXPECT_EQ(reader.Count(2), 0U);
    EXPECT_EQ(reader.Finish(), Status::MalformedBlob);
}

TEST(Blob, NumbersThatAreNotFiniteMakeTheModelMalformed)
{
    for (const float value : {std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN()})
    {
        BlobWriter writer(Kind);
        writer.F32(value);
        const std::vector<uint8_t> blob = writer.Finish();
        auto [status, reader] = Open(blob);
        EXPECT_EQ(reader.F32(), 0.0F);
        EXPECT_EQ(reader.Finish(), Status::MalformedBlob);
    }
}

TEST(Blob, StepsThatOverflowMakeTheModelMalformed)
{
    BlobWriter writer(Kind);
    writer.F32(1e38F); // a step, and one value
    std::vector<uint8_t> blob = writer.Finish();
    blob.insert(blob.end(), {0xFF, 0x7F});
    BlobDamage::Reseal(&blob);
    auto [status, reader] = Open(blob);
    std::vector<float> read(1);
    reader.Quantised(read);
    EXPECT_EQ(reader.Finish(), Status::MalformedBlob);
}

TEST(Blob, NestedModelsLongerThanTheRestAreNotRead)
{
    BlobWriter writer(Kind);
    writer.U32(100);
    const std::vector<uint8_t> blob = writer.Finish();
    auto [status, reader] = Open(blob);
    EXPECT_TRUE(reader.Nested().empty());
    EXPECT_EQ(reader.Finish(), Status::MalformedBlob);
}

TEST(Blob, EachFaultOfTheHeaderHasItsStatus)
{
    BlobWriter writer(Kind);
    writer.F32s(std::vector(50, 1.0F));
    BlobDamage::ExpectDamageIsRefused(writer.Finish(), [](const std::vector<uint8_t>& blob) {
        auto [status, reader] = Open(blob);
        std::vector<float> read(50);
        reader.F32s(read);
        return status == Status::Success ? reader.Finish() : status;
    });
}

} // namespace BlobTests

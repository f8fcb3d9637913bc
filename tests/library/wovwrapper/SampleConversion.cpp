#include "library/wovwrapper/SampleConversion.h"

#include "tests/support/SampleOracle.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <ostream>
#include <vector>

namespace SampleConversionTests
{

using testing::Each;
using testing::ElementsAreArray;

struct Path
{
    const char* name;
    void (*convert)(const uint8_t* samples, std::size_t count, int16_t* frame);
};

void PrintTo(const Path& path, std::ostream* out)
{
    *out << path.name;
}

struct Row
{
    float sample;
    int16_t expected;
};

constexpr float Infinity = std::numeric_limits<float>::infinity();
constexpr float NaN = std::numeric_limits<float>::quiet_NaN();
constexpr float Smallest = std::numeric_limits<float>::denorm_min();
constexpr float SmallestNormal = std::numeric_limits<float>::min();
constexpr float Largest = std::numeric_limits<float>::max();
constexpr float BelowOne = 1.0F - std::numeric_limits<float>::epsilon() / 2;
constexpr float AboveOne = 1.0F + std::numeric_limits<float>::epsilon();

/// Its product is 0.5.
constexpr float Half = 0.5F / 32767.0F;

const std::vector<Row> Table = {
    {0.0F, 0},
    {-0.0F, 0},
    {0.5F, 16384}, // 16383.5, half away from zero
    {-0.5F, -16384},
    {0.25F, 8192}, // 8191.75
    {-0.25F, -8192},
    {0.125F, 4096}, // 4095.875
    {0.1F, 3277},   // 3276.7
    {-0.1F, -3277},
    {1.0F, 32767},
    {-1.0F, -32767},
    {BelowOne, 32767},
    {-BelowOne, -32767},
    {AboveOne, 32767},
    {-AboveOne, -32767},
    {1.5F, 32767},
    {-2.0F, -32767},
    {Largest, 32767},
    {-Largest, -32767},
    {Infinity, 32767},
    {-Infinity, -32767},
    {NaN, -32767},
    {-NaN, -32767},
    {Smallest, 0},
    {-Smallest, 0},
    {SmallestNormal, 0},
    {-SmallestNormal, 0},
    {SmallestNormal - Smallest, 0},
    {Half, 1},
    {-Half, -1},
    {1.0F / 32767.0F, 1},
    {-1.0F / 32767.0F, -1},
    {0.4F / 32767.0F, 0},
    {-0.4F / 32767.0F, 0},
    {1.4F / 32767.0F, 1},
    {1.6F / 32767.0F, 2},
    {-1.6F / 32767.0F, -2},
    {32766.4F / 32767.0F, 32766},
    {32766.6F / 32767.0F, 32767},
};

class SampleConversion : public testing::TestWithParam<Path>
{
protected:
    static std::vector<int16_t> Convert(const std::vector<float>& samples)
    {
        std::vector<int16_t> frame(samples.size());
        GetParam().convert(static_cast<const uint8_t*>(static_cast<const void*>(samples.data())), samples.size(), frame.data());
        return frame;
    }

    /// Each of the samples stands at every place of the eight that one step of the conversion takes.
    static void ExpectAtEveryPlace(float sample, int16_t expected)
    {
        constexpr std::size_t Places = 8;
        EXPECT_THAT(Convert(std::vector<float>(Places, sample)), Each(expected)) << sample;
        EXPECT_THAT(Convert({sample}), Each(expected)) << sample;
    }
};

INSTANTIATE_TEST_SUITE_P(Paths, SampleConversion,
                         testing::Values(Path{"ConvertSamples", ConvertSamples},
                                         Path{"ConvertSamplesPlain", ConvertSamplesPlain}));

TEST_P(SampleConversion, ClampsScalesAndRoundsHalfAwayFromZero)
{
    for (const Row& row : Table)
    {
        ExpectAtEveryPlace(row.sample, row.expected);
    }
}

TEST_P(SampleConversion, EveryNaNIsTheLowestSample)
{
    for (const uint32_t pattern : {0x7FC00000U, 0xFFC00000U, 0x7F800001U, 0xFF800001U, 0x7FFFFFFFU, 0xFFFFFFFFU, 0x7FA5A5A5U})
    {
        SCOPED_TRACE(pattern);
        std::vector<uint8_t> bytes;
        for (int i = 0; i < 9; ++i)
        {
            const auto* first = static_cast<const uint8_t*>(static_cast<const void*>(&pattern));
            bytes.insert(bytes.end(), first, first + sizeof(pattern));
        }
        std::vector<int16_t> frame(9);
        GetParam().convert(bytes.data(), frame.size(), frame.data());
        EXPECT_THAT(frame, Each(-32767));
    }
}

TEST_P(SampleConversion, EveryResultBeginsAtItsHalf)
{
    constexpr int NeighboursEachSide = 4;
    for (int value = 1; value <= 32767; ++value)
    {
        float sample = (static_cast<float>(value) - 0.5F) / 32767.0F;
        for (int i = 0; i < NeighboursEachSide; ++i)
        {
            sample = std::nextafter(sample, 0.0F);
        }
        std::vector<float> samples;
        std::vector<int16_t> expected;
        for (int i = -NeighboursEachSide; i <= NeighboursEachSide; ++i)
        {
            for (const float signedSample : {sample, -sample})
            {
                samples.push_back(signedSample);
                expected.push_back(ExpectedSample(signedSample));
            }
            sample = std::nextafter(sample, 1.0F);
        }
        ASSERT_EQ(expected.front(), value - 1);
        ASSERT_EQ(expected.back(), -value);
        ASSERT_EQ(Convert(samples), expected) << value;
    }
}

TEST_P(SampleConversion, TakesEveryCountAndAlignmentAndWritesNothingElse)
{
    constexpr std::size_t MostSamples = 40;
    constexpr int16_t Untouched = 0x5A5A;
    for (std::size_t count = 0; count <= MostSamples; ++count)
    {
        for (std::size_t offset = 0; offset < sizeof(float); ++offset)
        {
            for (std::size_t frameOffset = 0; frameOffset < 8; ++frameOffset)
            {
                // Of exactly the bytes that may be read.
                std::vector<uint8_t> bytes(offset + count * sizeof(float));
                std::vector<int16_t> expected(frameOffset, Untouched);
                for (std::size_t i = 0; i < count; ++i)
                {
                    const Row& row = Table[(i + count) % Table.size()];
                    std::memcpy(bytes.data() + offset + i * sizeof(float), &row.sample, sizeof(float));
                    expected.push_back(row.expected);
                }
                expected.resize(expected.size() + 8, Untouched);

                std::vector<int16_t> frame(expected.size(), Untouched);
                GetParam().convert(bytes.data() + offset, count, frame.data() + frameOffset);
                ASSERT_THAT(frame, ElementsAreArray(expected))
                    << count << " samples at offset " << offset << ", to offset " << frameOffset;
            }
        }
    }
}

} // namespace SampleConversionTests

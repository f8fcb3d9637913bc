#include "library/wovwrapper/FastConversion.h"

#include "tests/support/SampleOracle.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

namespace FastConversionTests
{

using testing::Each;

constexpr int16_t Untouched = 4711;

/// Samples beyond full scale on both sides, and all that lies between.
std::vector<float> Ramp(std::size_t count)
{
    std::vector<float> samples(count);
    for (std::size_t i = 0; i < count; ++i)
    {
        samples[i] = static_cast<float>(i % 29) / 10.0F - 1.4F;
    }
    return samples;
}

TEST(FastConversion, ConvertsTheFirstSamplesAndLeavesTheRest)
{
    for (std::size_t count = 0; count < 40; ++count)
    {
        SCOPED_TRACE(count);
        const std::vector<float> samples = Ramp(count);
        std::vector<int16_t> frame(count, Untouched);
        const std::size_t converted = ConvertManyAtOnce(reinterpret_cast<const uint8_t*>(samples.data()), count, frame.data());
        ASSERT_LE(converted, count);
        for (std::size_t i = 0; i < converted; ++i)
        {
            ASSERT_EQ(frame[i], ExpectedSample(samples[i])) << i;
        }
        EXPECT_THAT(std::vector<int16_t>(frame.begin() + static_cast<std::ptrdiff_t>(converted), frame.end()), Each(Untouched));
    }
}

TEST(FastConversion, TakesAllButAFewOnAProcessorThatCan)
{
#if defined(__SSE2__) || defined(_M_X64)
    constexpr std::size_t Expected = 32;
#else
    constexpr std::size_t Expected = 0;
#endif
    const std::vector<float> samples = Ramp(39);
    std::vector<int16_t> frame(39);
    EXPECT_EQ(ConvertManyAtOnce(reinterpret_cast<const uint8_t*>(samples.data()), samples.size(), frame.data()), Expected);
}

TEST(FastConversion, SamplesNeedNoAlignment)
{
    const std::vector<float> samples = Ramp(16);
    for (std::size_t shift = 1; shift < sizeof(float); ++shift)
    {
        std::vector<uint8_t> bytes(shift + samples.size() * sizeof(float));
        std::memcpy(bytes.data() + shift, samples.data(), samples.size() * sizeof(float));
        std::vector<int16_t> frame(samples.size());
        const std::size_t converted = ConvertManyAtOnce(bytes.data() + shift, samples.size(), frame.data());
        for (std::size_t i = 0; i < converted; ++i)
        {
            ASSERT_EQ(frame[i], ExpectedSample(samples[i])) << shift << ", " << i;
        }
    }
}

} // namespace FastConversionTests

#include "console/pages/Report.h"

#include <gtest/gtest.h>

using namespace velox::console;

TEST(Report, TheWaveKeepsEveryPeakOfALongRecording)
{
    std::vector<float> samples(1'000'000, 0.0F);
    samples[0] = 0.5F;
    samples[654'321] = -0.9F;
    samples[999'999] = 0.7F;
    const std::vector<SampleRange> wave = WaveOf(samples);
    ASSERT_EQ(wave.size(), MostWaveStretches);
    EXPECT_EQ(wave.front().most, 0.5F);
    EXPECT_EQ(wave[654'321 * MostWaveStretches / 1'000'000].least, -0.9F);
    EXPECT_EQ(wave.back().most, 0.7F);
    EXPECT_EQ(WaveOf(std::vector{0.1F, 0.2F}).size(), 2U);
    EXPECT_TRUE(WaveOf({}).empty());
}

#include "console/report/Picture.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace PictureTests
{

using namespace velox::console;

TEST(Picture, TheWaveKeepsEveryPeakOfALongRecording)
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

TEST(Picture, AWaveThatIsBuiltPieceByPieceKeepsEveryPeakToo)
{
    WaveBuilder builder;
    std::vector<float> block(1000, 0.0F);
    for (int i = 0; i < 1000; ++i)
    {
        block[7] = i == 654 ? -0.9F : 0.0F;
        builder.Add(block);
    }
    const std::vector<SampleRange> wave = builder.Finish();
    EXPECT_LE(wave.size(), MostWaveStretches);
    EXPECT_GT(wave.size(), MostWaveStretches / 2);
    const auto stretch = static_cast<std::size_t>(0.654007 * static_cast<double>(wave.size()));
    EXPECT_EQ(std::min({wave[stretch - 1].least, wave[stretch].least, wave[stretch + 1].least}), -0.9F);
    EXPECT_TRUE(WaveBuilder().Finish().empty());
}

} // namespace PictureTests

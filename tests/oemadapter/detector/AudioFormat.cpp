#include "oemadapter/detector/AudioFormat.h"

#include "tests/oemadapter/support/LiveObjects.h"
#include "tests/support/AudioFormat.h"

#include <gtest/gtest.h>

namespace AudioFormatTests
{

TEST(AudioFormat, IsFloatOf32BitsAt16KilohertzMono)
{
    const std::size_t before = LivePlatformObjects();
    {
        velox::oemadapter::ComPointer<IMFMediaType> mediaType;
        ASSERT_EQ(velox::oemadapter::MakeFloatFormat(&mediaType), S_OK);
        const WAVEFORMATEX format = ReadAudioFormat(mediaType.get());
        EXPECT_EQ(format.wFormatTag, WAVE_FORMAT_IEEE_FLOAT);
        EXPECT_EQ(format.nChannels, 1);
        EXPECT_EQ(format.nSamplesPerSec, 16000U);
        EXPECT_EQ(format.nAvgBytesPerSec, 64000U);
        EXPECT_EQ(format.nBlockAlign, 4);
        EXPECT_EQ(format.wBitsPerSample, 32);
        EXPECT_EQ(format.cbSize, 0);
    }
    EXPECT_EQ(LivePlatformObjects(), before);
}

} // namespace AudioFormatTests

// The same questions to Media Foundation and to its double.
#include "tests/support/AudioFormat.h"

#include <gtest/gtest.h>

namespace AudioFormatTests
{

constexpr WAVEFORMATEX Format{
    .wFormatTag = WAVE_FORMAT_PCM,
    .nChannels = 2,
    .nSamplesPerSec = 48000,
    .nAvgBytesPerSec = 192000,
    .nBlockAlign = 4,
    .wBitsPerSample = 16,
    .cbSize = 0,
};

TEST(AudioFormat, IsWhatTheMediaTypeWasMadeFrom)
{
    IMFMediaType* type = nullptr;
    ASSERT_EQ(MFCreateMediaType(&type), S_OK);
    ASSERT_EQ(MFInitMediaTypeFromWaveFormatEx(type, &Format, sizeof(Format)), S_OK);
    const WAVEFORMATEX read = ReadAudioFormat(type);
    EXPECT_EQ(read.wFormatTag, Format.wFormatTag);
    EXPECT_EQ(read.nChannels, Format.nChannels);
    EXPECT_EQ(read.nSamplesPerSec, Format.nSamplesPerSec);
    EXPECT_EQ(read.nAvgBytesPerSec, Format.nAvgBytesPerSec);
    EXPECT_EQ(read.nBlockAlign, Format.nBlockAlign);
    EXPECT_EQ(read.wBitsPerSample, Format.wBitsPerSample);
    EXPECT_EQ(read.cbSize, Format.cbSize);
    EXPECT_EQ(type->Release(), 0U);
}

TEST(AudioFormat, NeedsAWholeFormat)
{
    IMFMediaType* type = nullptr;
    ASSERT_EQ(MFCreateMediaType(&type), S_OK);
    EXPECT_EQ(MFInitMediaTypeFromWaveFormatEx(type, &Format, sizeof(Format) - 1), E_INVALIDARG);
    EXPECT_EQ(type->Release(), 0U);
}

TEST(AudioFormat, MediaTypesCountTheirReferences)
{
    IMFMediaType* type = nullptr;
    ASSERT_EQ(MFCreateMediaType(&type), S_OK);
    EXPECT_EQ(type->AddRef(), 2U);
    EXPECT_EQ(type->Release(), 1U);
    EXPECT_EQ(type->Release(), 0U);
}

} // namespace AudioFormatTests

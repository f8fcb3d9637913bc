#include "console/hosting/RecordingBuffer.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <vector>

using namespace velox::console;

TEST(RecordingBuffer, HoldsTheSamplesAsTheyAre)
{
    constexpr std::array Samples{0.0F, -1.0F, 0.25F};
    const ComPointer<IMFMediaBuffer> buffer = MakeRecording(Samples);
    BYTE* bytes = nullptr;
    DWORD most = 0;
    DWORD size = 0;
    ASSERT_EQ(buffer->Lock(&bytes, &most, &size), S_OK);
    ASSERT_EQ(size, sizeof(Samples));
    EXPECT_EQ(std::memcmp(bytes, Samples.data(), size), 0);
    EXPECT_EQ(buffer->Unlock(), S_OK);
}

TEST(RecordingBuffer, MayHoldNoSample)
{
    DWORD size = 1;
    EXPECT_EQ(MakeRecording({})->GetCurrentLength(&size), S_OK);
    EXPECT_EQ(size, 0U);
}

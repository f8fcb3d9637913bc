#include "tests/support/MediaBuffer.h"

#include <gtest/gtest.h>

#include <cstring>

namespace MediaBufferTests
{

TEST(MediaBuffer, HoldsTheSamples)
{
    for (const auto& samples : {std::vector<float>{0.5F, -1.0F, 0.25F}, std::vector<float>()})
    {
        SCOPED_TRACE(samples.size());
        const MediaBuffer buffer = MakeMediaBuffer(samples);
        BYTE* bytes = nullptr;
        DWORD length = 4711;
        ASSERT_EQ(buffer->Lock(&bytes, nullptr, &length), S_OK);
        ASSERT_EQ(length, samples.size() * sizeof(float));
        if (length > 0)
        {
            EXPECT_EQ(std::memcmp(bytes, samples.data(), length), 0);
        }
        EXPECT_EQ(buffer->Unlock(), S_OK);
    }
}

} // namespace MediaBufferTests

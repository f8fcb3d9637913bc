#include "library/wovwrapper/VeloxWovSDK.h"
#include "tests/support/MediaBuffer.h"
#include "tests/support/SampleOracle.h"
#include "tests/support/WrapperTest.h"

#include <gmock/gmock.h>

namespace FeedRecordingOnRealTests
{

using testing::ElementsAre;

/// Media Foundation's memory buffer, with its locks counted.
class CountedBuffer final : public IMFMediaBuffer
{
public:
    explicit CountedBuffer(const std::vector<float>& samples) : buffer(MakeMediaBuffer(samples))
    {
    }

    int locks = 0;
    int unlocks = 0;

    STDMETHODIMP QueryInterface(REFIID id, void** object) override
    {
        return buffer->QueryInterface(id, object);
    }
    STDMETHODIMP_(ULONG) AddRef() override
    {
        return buffer->AddRef();
    }
    STDMETHODIMP_(ULONG) Release() override
    {
        return buffer->Release();
    }
    STDMETHODIMP Lock(BYTE** bytes, DWORD* maxLength, DWORD* currentLength) override
    {
        ++locks;
        return buffer->Lock(bytes, maxLength, currentLength);
    }
    STDMETHODIMP Unlock() override
    {
        ++unlocks;
        return buffer->Unlock();
    }
    STDMETHODIMP GetCurrentLength(DWORD* length) override
    {
        return buffer->GetCurrentLength(length);
    }
    STDMETHODIMP SetCurrentLength(DWORD length) override
    {
        return buffer->SetCurrentLength(length);
    }
    STDMETHODIMP GetMaxLength(DWORD* length) override
    {
        return buffer->GetMaxLength(length);
    }

private:
    MediaBuffer buffer;
};

class FeedRecordingOnRealBuffers : public SessionTest
{
protected:
    /// The frames that a buffer is fed in; its locks are in balance, and its references untouched.
    std::vector<std::vector<int16_t>> Feed(CountedBuffer& buffer)
    {
        bool detected = false;
        EXPECT_EQ(wrapper.FeedRecording(session, &buffer, 0, true, &detected), EngineStatus::Success);
        EXPECT_EQ(buffer.locks, 1);
        EXPECT_EQ(buffer.unlocks, 1);
        buffer.AddRef();
        EXPECT_EQ(buffer.Release(), 1U);
        return FramesFed();
    }
};

TEST_F(FeedRecordingOnRealBuffers, CurrentLengthIsFedNotTheMaximum)
{
    CountedBuffer buffer(std::vector<float>(1000, 1.0F));
    ASSERT_EQ(buffer.SetCurrentLength(2 * sizeof(float)), S_OK);
    std::vector<int16_t> expected(150);
    expected[0] = expected[1] = 32767;
    EXPECT_THAT(Feed(buffer), ElementsAre(expected));
}

TEST_F(FeedRecordingOnRealBuffers, BytesOfAnUnfinishedSampleAreLeftOut)
{
    CountedBuffer buffer(std::vector<float>(1000, 1.0F));
    ASSERT_EQ(buffer.SetCurrentLength(2 * sizeof(float) - 1), S_OK);
    std::vector<int16_t> expected(150);
    expected[0] = 32767;
    EXPECT_THAT(Feed(buffer), ElementsAre(expected));
}

TEST_F(FeedRecordingOnRealBuffers, EmptyBufferIsOneFrameOfZeros)
{
    CountedBuffer buffer(std::vector<float>{});
    EXPECT_THAT(Feed(buffer), ElementsAre(std::vector<int16_t>(150)));
}

TEST_F(FeedRecordingOnRealBuffers, TenSecondsAreFedWhole)
{
    std::vector<float> samples(160000);
    std::vector<int16_t> expected;
    for (std::size_t i = 0; i < samples.size(); ++i)
    {
        samples[i] = static_cast<float>(i) / 80000.0F - 1.0F;
        expected.push_back(ExpectedSample(samples[i]));
    }
    CountedBuffer buffer(samples);
    std::vector<int16_t> fed;
    for (const std::vector<int16_t>& frame : Feed(buffer))
    {
        fed.insert(fed.end(), frame.begin(), frame.end());
    }
    expected.resize((160000 / 150 + 1) * 150);
    EXPECT_EQ(fed, expected);
}

} // namespace FeedRecordingOnRealTests

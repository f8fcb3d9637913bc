#include "oemadapter/detector/PcmRecording.h"

#include "tests/oemadapter/support/LiveObjects.h"
#include "tests/oemadapter/support/PcmTake.h"

#include <gmock/gmock.h>

#include <cstring>
#include <limits>

namespace PcmRecordingTests
{

using testing::ElementsAre;
using velox::oemadapter::ComPointer;
using velox::oemadapter::FloatPosition;
using velox::oemadapter::MakeRecording;

class PcmRecording : public testing::Test
{
protected:
    ~PcmRecording() override
    {
        recording.reset();
        EXPECT_EQ(LivePlatformObjects(), before);
    }

    std::vector<float> Samples() const
    {
        BYTE* bytes = nullptr;
        DWORD length = 0;
        EXPECT_EQ(recording->Lock(&bytes, nullptr, &length), S_OK);
        std::vector<float> samples(length / sizeof(float));
        if (length > 0)
        {
            std::memcpy(samples.data(), bytes, length);
        }
        recording->Unlock();
        return samples;
    }

    std::size_t before = LivePlatformObjects();
    ComPointer<IMFMediaBuffer> recording;
};

TEST_F(PcmRecording, BecomesFloatFromMinusOneToOne)
{
    PcmTake take({0, 1, -1, 16384, 32767, -32768});
    ASSERT_EQ(MakeRecording(take.Format(), &recording), S_OK);
    EXPECT_THAT(Samples(), ElementsAre(0.0F, 1 / 32768.0F, -1 / 32768.0F, 0.5F, 32767 / 32768.0F, -1.0F));
}

TEST_F(PcmRecording, MayBeEmpty)
{
    PcmTake take({});
    ASSERT_EQ(MakeRecording(take.Format(), &recording), S_OK);
    EXPECT_TRUE(Samples().empty());
}

TEST_F(PcmRecording, MayBeAsLongAsItsLengthCanSay)
{
    PcmTake take(std::vector<int16_t>(32767, 16384));
    ASSERT_EQ(take.Format()->cbSize, 65534);
    ASSERT_EQ(MakeRecording(take.Format(), &recording), S_OK);
    EXPECT_EQ(Samples(), std::vector<float>(32767, 0.5F));
}

TEST_F(PcmRecording, OtherFormatsAreRefused)
{
    EXPECT_EQ(MakeRecording(nullptr, &recording), E_INVALIDARG);
    const auto expectRefused = [&](const char* description, void (*change)(WAVEFORMATEX&)) {
        PcmTake take({1, 2, 3});
        change(*take.Format());
        EXPECT_EQ(MakeRecording(take.Format(), &recording), E_INVALIDARG) << description;
    };
    expectRefused("float", [](WAVEFORMATEX& format) { format.wFormatTag = WAVE_FORMAT_IEEE_FLOAT; });
    expectRefused("extensible", [](WAVEFORMATEX& format) { format.wFormatTag = 0xFFFE; });
    expectRefused("stereo", [](WAVEFORMATEX& format) { format.nChannels = 2; });
    expectRefused("no channel", [](WAVEFORMATEX& format) { format.nChannels = 0; });
    expectRefused("8 kHz", [](WAVEFORMATEX& format) { format.nSamplesPerSec = 8000; });
    expectRefused("8 bits", [](WAVEFORMATEX& format) { format.wBitsPerSample = 8; });
    expectRefused("32 bits", [](WAVEFORMATEX& format) { format.wBitsPerSample = 32; });
    expectRefused("half a sample", [](WAVEFORMATEX& format) { format.cbSize = 5; });
    EXPECT_EQ(recording, nullptr);
}

TEST_F(PcmRecording, PositionsDoubleUnlessTheyAreNotKnown)
{
    constexpr int32_t Most = std::numeric_limits<int32_t>::max();
    constexpr int32_t Least = std::numeric_limits<int32_t>::min();
    for (const auto& [position, expected] : std::vector<std::pair<int32_t, int32_t>>{{Least, Least},
                                                                                     {-1, -1},
                                                                                     {0, 0},
                                                                                     {1, 1},
                                                                                     {2, 4},
                                                                                     {32000, 64000},
                                                                                     {Most / 2, Most - 1},
                                                                                     {Most / 2 + 1, Most},
                                                                                     {Most, Most}})
    {
        EXPECT_EQ(FloatPosition(position), expected) << position;
    }
}

} // namespace PcmRecordingTests

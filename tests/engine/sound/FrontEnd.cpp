#include "engine/sound/FrontEnd.h"

#include "tests/engine/support/Signals.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace FrontEndTests
{

using namespace velox::engine;
using testing::Each;
using testing::FloatEq;
using testing::FloatNear;
using testing::Pointwise;

const float LogFloor = std::log(1e-9F);

std::size_t Loudest(const MelFrame& frame)
{
    return static_cast<std::size_t>(std::max_element(frame.begin(), frame.end()) - frame.begin());
}

/// The frame of the window that ends with these samples, computed step by step from the whole recording.
MelFrame Directly(const std::vector<float>& samples, std::size_t end)
{
    std::vector<float> window(WindowSize);
    for (std::size_t i = 0; i < WindowSize; ++i)
    {
        const std::size_t at = end - WindowSize + i;
        window[i] = samples[at] - 0.97F * (at == 0 ? 0.0F : samples[at - 1]);
    }
    PowerSpectrum spectrum;
    std::array<float, PowerSpectrum::Bins> power{};
    spectrum.Compute(window.data(), power.data());
    MelFrame frame{};
    MelFilterbank().Apply(power.data(), &frame);
    return frame;
}

TEST(FrontEnd, TheFirstFrameComesWhenTheWindowIsFull)
{
    FrontEnd frontEnd;
    const std::vector<float> samples(FrameSize, 0.1F);
    MelFrame frame{};
    EXPECT_FALSE(frontEnd.Push(samples.data(), &frame));
    EXPECT_FALSE(frontEnd.Push(samples.data(), &frame));
    EXPECT_TRUE(frontEnd.Push(samples.data(), &frame));
    EXPECT_TRUE(frontEnd.Push(samples.data(), &frame));
}

TEST(FrontEnd, EveryFrameIsThatOfItsWindow)
{
    const std::vector<float> samples = Signals::Noise(0.3, 20 * FrameSize, 5);
    const std::vector<MelFrame> frames = Signals::LogMel(samples);
    ASSERT_EQ(frames.size(), 18U);
    for (std::size_t t = 0; t < frames.size(); ++t)
    {
        SCOPED_TRACE(t);
        EXPECT_THAT(frames[t], Pointwise(FloatNear(1e-4F), Directly(samples, (t + FrontEnd::FirstFrame) * FrameSize)));
    }
}

TEST(FrontEnd, ASineIsLoudestInTheChannelAroundIt)
{
    const MelFilterbank filterbank;
    for (const std::size_t channel : {3U, 13U, 19U, 30U, 39U})
    {
        const double frequency = filterbank.CentreFrequency(channel);
        EXPECT_EQ(Loudest(Signals::LogMel(Signals::Sine(frequency, 0.3, 1600)).back()), channel) << frequency;
    }
}

TEST(FrontEnd, AWarpMovesASineToALowerChannel)
{
    // Channels 1.14 times as high: the 1713 Hz of channel 19 lie near the former 1503 Hz, between channel 17 and 18.
    const std::vector<float> samples = Signals::Sine(1713.2, 0.3, 1600);
    EXPECT_EQ(Loudest(Signals::LogMel(samples).back()), 19U);
    EXPECT_EQ(Loudest(Signals::LogMel(samples, 1.14).back()), 17U);
}

TEST(FrontEnd, TwiceTheAmplitudeIsFourTimesTheEnergy)
{
    const MelFrame quiet = Signals::LogMel(Signals::Noise(0.2, 1600, 3)).back();
    const MelFrame loud = Signals::LogMel(Signals::Noise(0.4, 1600, 3)).back();
    for (std::size_t channel = 0; channel < MelChannels; ++channel)
    {
        EXPECT_NEAR(loud[channel] - quiet[channel], std::log(4.0), 1e-3) << channel;
    }
}

TEST(FrontEnd, SilenceIsTheFloorAgainOnceTheWindowHasPassed)
{
    std::vector<float> samples = Signals::Noise(0.3, 5 * FrameSize, 5);
    samples.resize(12 * FrameSize, 0.0F);
    const std::vector<MelFrame> frames = Signals::LogMel(samples);
    // The last frame with sound under its window is the one that ends with push 7; the pre-emphasis reaches one sample further.
    EXPECT_GT(*std::max_element(frames[4].begin(), frames[4].end()), LogFloor + 1.0F);
    for (std::size_t t = 5; t < frames.size(); ++t)
    {
        EXPECT_THAT(frames[t], Each(FloatEq(LogFloor))) << t;
    }
}

TEST(FrontEnd, ARecordingsFramesAreThoseOfItsFullFrames)
{
    const std::vector<float> samples = Signals::Noise(0.1, 20 * FrameSize + 159, 1);
    const std::vector<MelFrame> frames = LogMelFrames(samples);
    EXPECT_EQ(frames, Signals::LogMel(samples));
    EXPECT_EQ(frames.size(), 20 - velox::engine::FrontEnd::FirstFrame + 1);
    EXPECT_TRUE(LogMelFrames({}).empty());
}

} // namespace FrontEndTests

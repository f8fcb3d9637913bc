#include "engine/sound/Endpointing.h"

#include "tests/engine/support/Signals.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>

namespace
{

using namespace velox::engine;

/// A quiet room, and in it stretches of loud noise for speech.
class Endpointing : public testing::Test
{
protected:
    static constexpr double RoomAmplitude = 0.0005;
    static constexpr double SpeechAmplitude = 0.2;
    static constexpr std::size_t Centisecond = 160;

    static void Silence(std::size_t centiseconds)
    {
        Append(Signals::Noise(RoomAmplitude, centiseconds * Centisecond, take.size() + 1));
    }

    static void Speech(std::size_t centiseconds, double amplitude = SpeechAmplitude)
    {
        Append(Signals::Noise(amplitude, centiseconds * Centisecond, take.size() + 2));
    }

    static void Append(const std::vector<float>& samples)
    {
        take.insert(take.end(), samples.begin(), samples.end());
    }

    static Endpoints Find()
    {
        return FindEndpoints(Signals::LogMel(take), take);
    }

    void SetUp() override
    {
        take.clear();
    }

    static inline std::vector<float> take;
};

/// Frame t looks at the centiseconds t + 0.5 to t + 3: sound from centisecond a to b is in the frames a - 2 to b - 1. Five frames
/// of padding stand on either side.
TEST_F(Endpointing, FindsTheSpeechWithItsPadding)
{
    Silence(60);
    Speech(80);
    Silence(50);
    const Endpoints found = Find();
    EXPECT_EQ(found.fault, TakeFault::None);
    EXPECT_NEAR(static_cast<double>(found.begin), 60 - 2 - 5, 1);
    EXPECT_NEAR(static_cast<double>(found.end), 140 + 5, 1);
    EXPECT_EQ(found.clippedSamples, 0U);
}

TEST_F(Endpointing, MeasuresTheLevelOfTheSpeechAlone)
{
    Silence(60);
    Speech(80);
    Silence(50);
    EXPECT_NEAR(Find().level, Signals::Decibels(SpeechAmplitude / std::sqrt(3.0)), 0.3);
}

TEST_F(Endpointing, AClosureWithinAWordDoesNotEndTheSpeech)
{
    Silence(40);
    Speech(30);
    Silence(12);
    Speech(4); // a burst at the end
    Silence(40);
    const Endpoints found = Find();
    EXPECT_EQ(found.fault, TakeFault::None);
    EXPECT_NEAR(static_cast<double>(found.begin), 40 - 7, 1);
    EXPECT_NEAR(static_cast<double>(found.end), 86 + 5, 1);
}

TEST_F(Endpointing, APauseBetweenWordsDoesNotEndTheSpeech)
{
    Silence(40);
    Speech(40);
    Silence(40);
    Speech(40);
    Silence(40);
    const Endpoints found = Find();
    EXPECT_EQ(found.fault, TakeFault::None);
    EXPECT_NEAR(static_cast<double>(found.end), 160 + 5, 1);
}

TEST_F(Endpointing, AClickIsNotSpeech)
{
    Silence(40);
    Append(std::vector<float>(8, 0.9F));
    Silence(60);
    Speech(70);
    Silence(60);
    Append(std::vector<float>(8, 0.9F));
    Silence(30);
    const Endpoints found = Find();
    EXPECT_EQ(found.fault, TakeFault::None);
    EXPECT_NEAR(static_cast<double>(found.begin), 100 - 7, 1);
    EXPECT_NEAR(static_cast<double>(found.end), 170 + 5, 1);
}

TEST_F(Endpointing, ATakeThatBeginsWithAClickIsNotCut)
{
    Append(std::vector<float>(8, 0.9F));
    Silence(60);
    Speech(70);
    Silence(60);
    EXPECT_EQ(Find().fault, TakeFault::None);
}

TEST_F(Endpointing, RoomNoiseAloneIsNoSpeech)
{
    Silence(200);
    const Endpoints found = Find();
    EXPECT_EQ(found.fault, TakeFault::NoSpeech);
    EXPECT_EQ(found.begin, 0U);
    EXPECT_EQ(found.end, 0U);
}

TEST_F(Endpointing, AClickAloneIsNoSpeech)
{
    Silence(100);
    Append(std::vector<float>(8, 0.9F));
    Silence(100);
    EXPECT_EQ(Find().fault, TakeFault::NoSpeech);
}

TEST_F(Endpointing, DigitalSilenceIsNoSpeech)
{
    take.assign(32000, 0.0F);
    EXPECT_EQ(Find().fault, TakeFault::NoSpeech);
}

TEST_F(Endpointing, ASteadyToneIsNoSpeech)
{
    take = Signals::Sine(1000.0, 0.3, 32000);
    EXPECT_EQ(Find().fault, TakeFault::NoSpeech);
}

TEST_F(Endpointing, AnEmptyOrTinyTakeIsNoSpeech)
{
    EXPECT_EQ(Find().fault, TakeFault::NoSpeech);
    Speech(8);
    EXPECT_EQ(Find().fault, TakeFault::NoSpeech);
}

TEST_F(Endpointing, SpeechAfterDigitalSilenceIsFound)
{
    take.assign(60 * Centisecond, 0.0F);
    Speech(70);
    Append(std::vector<float>(60 * Centisecond, 0.0F));
    const Endpoints found = Find();
    EXPECT_EQ(found.fault, TakeFault::None);
    EXPECT_NEAR(static_cast<double>(found.begin), 60 - 7, 1);
}

TEST_F(Endpointing, SpeechBelowTheQuietLevelIsTooQuiet)
{
    const double limit = std::pow(10.0, QuietLevel / 20.0) * std::sqrt(3.0);
    for (const double decibels : {-3.0, 3.0})
    {
        SCOPED_TRACE(decibels);
        take.assign(60 * Centisecond, 0.0F);
        Speech(70, limit * std::pow(10.0, decibels / 20.0));
        Append(std::vector<float>(60 * Centisecond, 0.0F));
        EXPECT_EQ(Find().fault, decibels < 0.0 ? TakeFault::TooQuiet : TakeFault::None);
    }
}

TEST_F(Endpointing, SpeechUnderWayInTheFirstFrameIsCutAtItsStart)
{
    Speech(60);
    Silence(60);
    EXPECT_EQ(Find().fault, TakeFault::CutAtStart);
    EXPECT_EQ(Find().begin, 0U);
}

TEST_F(Endpointing, SpeechUnderWayInTheLastFrameIsCutAtItsEnd)
{
    Silence(60);
    Speech(60);
    const Endpoints found = Find();
    EXPECT_EQ(found.fault, TakeFault::CutAtEnd);
    EXPECT_EQ(found.end, Signals::LogMel(take).size());
}

TEST_F(Endpointing, TheSamePhraseTwiceIsTwoPhrases)
{
    Silence(40);
    Speech(70);
    Silence(70);
    Speech(60);
    Silence(40);
    const Endpoints found = Find();
    EXPECT_EQ(found.fault, TakeFault::TwoPhrases);
    EXPECT_NEAR(static_cast<double>(found.begin), 40 - 7, 1);
    EXPECT_NEAR(static_cast<double>(found.end), 110 + 5, 1);
}

TEST_F(Endpointing, AShortSoundFarFromThePhraseIsLeftOut)
{
    Silence(40);
    Speech(20);
    Silence(70);
    Speech(70);
    Silence(40);
    const Endpoints found = Find();
    EXPECT_EQ(found.fault, TakeFault::None);
    EXPECT_NEAR(static_cast<double>(found.begin), 130 - 7, 1);
}

TEST_F(Endpointing, ClippedSpeechIsRefused)
{
    Silence(40);
    const std::size_t start = take.size();
    Speech(70, 1.0);
    Silence(40);
    std::fill_n(take.begin() + static_cast<std::ptrdiff_t>(start) + 100, 100, 1.0F);
    EXPECT_EQ(Find().fault, TakeFault::Clipped); // 100 of 11200 samples
    EXPECT_GE(Find().clippedSamples, 100U);
}

TEST_F(Endpointing, AFewClippedSamplesDoNotSpoilATake)
{
    Silence(40);
    const std::size_t start = take.size();
    Speech(70);
    Silence(40);
    std::fill_n(take.begin() + static_cast<std::ptrdiff_t>(start) + 100, 10, -1.0F);
    EXPECT_EQ(Find().fault, TakeFault::None);
    EXPECT_EQ(Find().clippedSamples, 10U);
}

TEST_F(Endpointing, ALonePeakIsNotClipped)
{
    EXPECT_EQ(CountClipped(std::vector{0.0F, 1.0F, 0.5F, -1.0F, 0.0F}), 0U);
    EXPECT_EQ(CountClipped(std::vector{1.0F, 1.0F, 0.5F, -1.0F, -1.0F, -1.0F}), 5U);
    EXPECT_EQ(CountClipped({}), 0U);
}

TEST_F(Endpointing, TheFirstClippedSampleIsFound)
{
    EXPECT_EQ(FirstClipped(std::vector{0.0F, 1.0F, 0.5F, -1.0F, -1.0F}), 3U);
    EXPECT_EQ(FirstClipped(std::vector{1.0F, 0.5F}), std::nullopt);
    EXPECT_EQ(FirstClipped({}), std::nullopt);
}

} // namespace

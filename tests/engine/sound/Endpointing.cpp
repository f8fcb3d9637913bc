#include "engine/sound/Endpointing.h"

#include "tests/engine/support/Signals.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <ostream>

namespace EndpointingTests
{

using namespace velox::engine;

constexpr std::size_t Centisecond = 160;
constexpr double SpeechAmplitude = 0.2;

enum class Sound
{
    Nothing, ///< digital silence
    Room,    ///< a quiet one
    Speech,  ///< loud noise stands for it
    Click,
};

struct Part
{
    Sound sound;
    std::size_t centiseconds;
};

constexpr Part Click{Sound::Click, 0};

constexpr Part Nothing(std::size_t centiseconds)
{
    return {Sound::Nothing, centiseconds};
}

constexpr Part Room(std::size_t centiseconds)
{
    return {Sound::Room, centiseconds};
}

constexpr Part Speech(std::size_t centiseconds)
{
    return {Sound::Speech, centiseconds};
}

std::vector<float> Samples(const Part& part, double speechAmplitude, std::size_t before)
{
    constexpr double RoomAmplitude = 0.0005;
    const std::size_t count = part.centiseconds * Centisecond;
    switch (part.sound)
    {
    case Sound::Room:
        return Signals::Noise(RoomAmplitude, count, before + 1);
    case Sound::Speech:
        return Signals::Noise(speechAmplitude, count, before + 2);
    case Sound::Click:
        return std::vector<float>(8, 0.9F);
    case Sound::Nothing:
        break;
    }
    return std::vector<float>(count, 0.0F);
}

std::vector<float> Take(const std::vector<Part>& parts, double speechAmplitude = SpeechAmplitude)
{
    std::vector<float> take;
    for (const Part& part : parts)
    {
        const std::vector<float> samples = Samples(part, speechAmplitude, take.size());
        take.insert(take.end(), samples.begin(), samples.end());
    }
    return take;
}

Endpoints Find(const std::vector<float>& take)
{
    return FindEndpoints(Signals::LogMel(take), take);
}

/// A second of speech with quiet around it.
const std::vector<Part> Plain{Room(60), Speech(80), Room(50)};

struct Case
{
    const char* name;
    std::vector<Part> parts;
    TakeFault fault;
    std::size_t begin = 0; ///< of the speech, in centiseconds
    std::size_t end = 0;
};

void PrintTo(const Case& one, std::ostream* stream)
{
    *stream << one.name;
}

class Endpointing : public testing::TestWithParam<Case>
{
};

/// Frame t looks at the centiseconds t + 0.5 to t + 3: sound from centisecond a to b is in the frames a - 2 to b - 1. Five frames
/// of padding stand on either side.
TEST_P(Endpointing, FindsTheSpeechWithItsPaddingOrTellsTheFault)
{
    const Endpoints found = Find(Take(GetParam().parts));
    EXPECT_EQ(found.fault, GetParam().fault);
    EXPECT_EQ(found.clippedSamples, 0U);
    if (GetParam().fault == TakeFault::NoSpeech)
    {
        EXPECT_EQ(found.begin, 0U);
        EXPECT_EQ(found.end, 0U);
        return;
    }
    EXPECT_NEAR(static_cast<double>(found.begin), static_cast<double>(GetParam().begin) - 2 - 5, 1);
    EXPECT_NEAR(static_cast<double>(found.end), static_cast<double>(GetParam().end) + 5, 1);
}

INSTANTIATE_TEST_SUITE_P(
    Takes, Endpointing,
    testing::Values(
        Case{"SpeechInAQuietRoom", Plain, TakeFault::None, 60, 140},
        Case{"AClosureWithinAWordAndABurstAtTheEnd",
             {Room(40), Speech(30), Room(12), Speech(4), Room(40)},
             TakeFault::None,
             40,
             86},
        Case{"APauseBetweenWords", {Room(40), Speech(40), Room(40), Speech(40), Room(40)}, TakeFault::None, 40, 160},
        Case{"ClicksAreNotSpeech", {Room(40), Click, Room(60), Speech(70), Room(60), Click, Room(30)}, TakeFault::None, 100, 170},
        Case{"ATakeThatBeginsWithAClickIsNotCut", {Click, Room(60), Speech(70), Room(60)}, TakeFault::None, 60, 130},
        Case{"RoomNoiseAlone", {Room(200)}, TakeFault::NoSpeech},
        Case{"AClickAlone", {Room(100), Click, Room(100)}, TakeFault::NoSpeech},
        Case{"DigitalSilence", {Nothing(200)}, TakeFault::NoSpeech}, //
        Case{"Empty", {}, TakeFault::NoSpeech},                      //
        Case{"Tiny", {Speech(8)}, TakeFault::NoSpeech},
        Case{"SpeechAfterDigitalSilence", {Nothing(60), Speech(70), Nothing(60)}, TakeFault::None, 60, 130},
        Case{"TheSamePhraseTwice", {Room(40), Speech(70), Room(70), Speech(60), Room(40)}, TakeFault::TwoPhrases, 40, 110},
        Case{"AShortSoundFarFromThePhrase", {Room(40), Speech(20), Room(70), Speech(70), Room(40)}, TakeFault::None, 130, 200}),
    [](const auto& info) { return info.param.name; });

TEST_F(Endpointing, MeasuresTheLevelOfTheSpeechAlone)
{
    EXPECT_NEAR(Find(Take(Plain)).level, Signals::Decibels(SpeechAmplitude / std::sqrt(3.0)), 0.3);
}

TEST_F(Endpointing, ASteadyToneIsNoSpeech)
{
    EXPECT_EQ(Find(Signals::Sine(1000.0, 0.3, 32000)).fault, TakeFault::NoSpeech);
}

TEST_F(Endpointing, SpeechBelowTheQuietLevelIsTooQuiet)
{
    const double limit = std::pow(10.0, QuietLevel / 20.0) * std::sqrt(3.0);
    for (const double decibels : {-3.0, 3.0})
    {
        SCOPED_TRACE(decibels);
        const auto take = Take({Nothing(60), Speech(70), Nothing(60)}, limit * std::pow(10.0, decibels / 20.0));
        EXPECT_EQ(Find(take).fault, decibels < 0.0 ? TakeFault::TooQuiet : TakeFault::None);
    }
}

TEST_F(Endpointing, SpeechUnderWayInTheFirstFrameIsCutAtItsStart)
{
    const Endpoints found = Find(Take({Speech(60), Room(60)}));
    EXPECT_EQ(found.fault, TakeFault::CutAtStart);
    EXPECT_EQ(found.begin, 0U);
}

TEST_F(Endpointing, SpeechUnderWayInTheLastFrameIsCutAtItsEnd)
{
    const std::vector<float> take = Take({Room(60), Speech(60)});
    const Endpoints found = Find(take);
    EXPECT_EQ(found.fault, TakeFault::CutAtEnd);
    EXPECT_EQ(found.end, Signals::LogMel(take).size());
}

TEST_F(Endpointing, OnlyManyClippedSamplesSpoilATake)
{
    constexpr auto Within = static_cast<std::ptrdiff_t>(40 * Centisecond) + 100;
    std::vector<float> many = Take({Room(40), Speech(70), Room(40)}, 1.0);
    std::fill_n(many.begin() + Within, 100, 1.0F);
    EXPECT_EQ(Find(many).fault, TakeFault::Clipped); // 100 of 11200 samples
    EXPECT_GE(Find(many).clippedSamples, 100U);

    std::vector<float> few = Take({Room(40), Speech(70), Room(40)});
    std::fill_n(few.begin() + Within, 10, -1.0F);
    EXPECT_EQ(Find(few).fault, TakeFault::None);
    EXPECT_EQ(Find(few).clippedSamples, 10U);
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

} // namespace EndpointingTests

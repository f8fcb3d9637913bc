#include "engine/training/TakePreparation.h"

#include "engine/sound/FrontEnd.h"
#include "tests/engine/support/Signals.h"
#include "tests/engine/support/TinyLanguage.h"

#include <gmock/gmock.h>

#include <numeric>

namespace TakePreparationTests
{

using namespace velox::engine;
using testing::ElementsAre;
using testing::Eq;
using testing::IsEmpty;
using testing::SizeIs;

PhraseTake TakeOf(std::vector<float> samples, const std::string& name = "take.wav")
{
    return {std::move(samples), name, "somebody", 2.5F};
}

TEST(TakePreparation, TheSpeechOfATakeIsFound)
{
    std::vector<std::string> warnings;
    const auto takes = PrepareTakes({TakeOf(TinyLanguage::SayPhrase())}, &warnings);
    EXPECT_THAT(warnings, IsEmpty());
    ASSERT_THAT(takes, SizeIs(1));
    EXPECT_THAT(takes[0].weight, Eq(2.5F));
    // 0.3 s of silence and half a second of noise come before it.
    EXPECT_NEAR(static_cast<double>(takes[0].begin), 80.0, 8.0);
    EXPECT_NEAR(static_cast<double>(takes[0].end), 80.0 + TinyLanguage::States * TinyLanguage::ToneFrames, 8.0);
    EXPECT_THAT(takes[0].PhraseLogMel(), SizeIs(takes[0].end - takes[0].begin));
    EXPECT_THAT(takes[0].PhraseSamples(), SizeIs((takes[0].end - takes[0].begin) * FrameSize + WindowSize));
}

TEST(TakePreparation, ATakeWithoutAnySoundHasNoSpeech)
{
    std::vector<std::string> warnings;
    EXPECT_THAT(PrepareTakes({TakeOf(std::vector<float>(SampleRate, 0.0F), "silence.wav")}, &warnings), IsEmpty());
    EXPECT_THAT(warnings, ElementsAre("silence.wav is left out: there is no speech in it."));
}

TEST(TakePreparation, TightlyCutTakesAreUsable)
{
    std::vector<float> tight = TinyLanguage::SayPhrase();
    tight = {tight.begin() + 8000, tight.begin() + 8000 + TinyLanguage::PhraseSamples};
    std::vector<std::string> warnings;
    EXPECT_THAT(PrepareTakes({TakeOf(tight)}, &warnings), SizeIs(1));
    EXPECT_THAT(warnings, IsEmpty());
}

TEST(TakePreparation, UselessTakesAreLeftOutAndNamed)
{
    const std::vector<float> once = TinyLanguage::SayPhrase();
    std::vector<float> twice = once;
    twice.insert(twice.end(), once.begin(), once.end());
    std::vector<float> clipped = once;
    for (float& sample : clipped)
    {
        sample = std::clamp(20.0F * sample, -1.0F, 1.0F);
    }
    std::vector<std::string> warnings;
    const auto takes =
        PrepareTakes({TakeOf(Signals::Noise(0.001, 16000, 3), "silence.wav"), TakeOf(TinyLanguage::Whisper(), "low.wav"),
                      TakeOf(twice, "twice.wav"), TakeOf(clipped, "loud.wav")},
                     &warnings);
    EXPECT_THAT(takes, IsEmpty());
    EXPECT_THAT(warnings,
                ElementsAre("silence.wav is left out: it is too quiet.", "low.wav is left out: it is too quiet.",
                            "twice.wav is left out: the phrase is in it twice.", "loud.wav is left out: it is clipped."));
}

TEST(TakePreparation, PaddingIsSilenceOnBothSides)
{
    const std::vector<float> padded = Pad(std::vector<float>{0.5F, -0.5F});
    ASSERT_THAT(padded, SizeIs(4800 + 2 + 4800));
    EXPECT_THAT(padded[4800], Eq(0.5F));
    EXPECT_THAT(padded[4801], Eq(-0.5F));
    EXPECT_THAT(std::accumulate(padded.begin(), padded.end(), 0.0F), Eq(0.0F));
}

} // namespace TakePreparationTests

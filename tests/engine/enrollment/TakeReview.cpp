#include "engine/enrollment/TakeReview.h"

#include "engine/sound/FeatureStream.h"
#include "tests/engine/support/Signals.h"
#include "tests/engine/support/TinyLanguage.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace TakeReviewTests
{

using namespace velox::engine;
using Tones = std::vector<std::size_t>;

constexpr std::size_t HalfSecond = 8000;

class TakeReview : public testing::Test
{
protected:
    velox::engine::TakeReview Review(const std::vector<float>& samples) const
    {
        return ReviewTake(&model, samples);
    }

    static std::vector<float> Clipped(double amplitude)
    {
        std::vector<float> samples = TinyLanguage::SayPhrase({amplitude, 0.0, 0.0});
        for (float& sample : samples)
        {
            sample = std::clamp(sample, -1.0F, 1.0F);
        }
        return samples;
    }

    /// Index of the frame whose middle lies at a sample.
    static std::size_t FrameAt(std::size_t sample)
    {
        std::size_t frame = 0;
        while (FeatureStream::MiddleSample(static_cast<int64_t>(frame)) < static_cast<int64_t>(sample))
        {
            ++frame;
        }
        return frame;
    }

    PhraseModel model = TinyLanguage::Phrase();
};

TEST_F(TakeReview, EveryFaultHasItsStatus)
{
    std::vector<float> twice = TinyLanguage::SayPhrase();
    const std::vector<float> once = twice;
    twice.insert(twice.end(), once.begin(), once.end());
    const std::vector<std::pair<std::vector<float>, Status>> cases{
        {TinyLanguage::SayPhrase(), Status::Success},
        {{}, Status::UtteranceTooShort},
        {std::vector<float>(5 * FrameSize, 0.0F), Status::UtteranceTooShort},
        {Signals::Noise(TinyLanguage::NoiseAmplitude, 16000, 1), Status::NoSpeech},
        {TinyLanguage::Whisper(), Status::TooQuiet},
        {Clipped(30.0), Status::Clipped},
        {TinyLanguage::Say(Tones{2, 3}, 0, HalfSecond), Status::CutAtStart},
        {TinyLanguage::Say(Tones{0, 1}, HalfSecond, 0), Status::CutAtEnd},
        {TinyLanguage::Say(Tones{3, 2, 1, 0}, HalfSecond, HalfSecond), Status::PhraseNotFound},
        {TinyLanguage::Say(Tones{0, 1}, HalfSecond, HalfSecond), Status::PhraseNotFound},
        {twice, Status::TwoPhrases},
    };
    for (const auto& [samples, status] : cases)
    {
        const velox::engine::TakeReview review = Review(samples);
        EXPECT_EQ(review.status, status) << "not " << static_cast<uint32_t>(status);
        const bool heard = status == Status::Success || status == Status::TwoPhrases;
        EXPECT_TRUE(heard || !review.phrase || status == Status::Clipped) << static_cast<uint32_t>(status);
    }
}

TEST_F(TakeReview, ATightlyCutTakeThatHoldsThePhraseIsGood)
{
    EXPECT_EQ(Review(TinyLanguage::Say(Tones{0, 1, 2, 3}, 0, HalfSecond)).status, Status::Success);
    EXPECT_EQ(Review(TinyLanguage::Say(Tones{0, 1, 2, 3}, HalfSecond, 0)).status, Status::Success);
}

TEST_F(TakeReview, SpeechAndPhraseAreFoundInTheirPlaces)
{
    const velox::engine::TakeReview review = Review(TinyLanguage::SayPhrase());
    constexpr auto Begin = static_cast<double>(HalfSecond);
    constexpr auto End = static_cast<double>(HalfSecond + TinyLanguage::PhraseSamples);
    EXPECT_NEAR(static_cast<double>(review.speechBegin), Begin, 0.1 * SampleRate);
    EXPECT_NEAR(static_cast<double>(review.speechEnd), End, 0.1 * SampleRate);
    ASSERT_TRUE(review.phrase);
    EXPECT_NEAR(static_cast<double>(review.phrase->startSample), Begin, 0.05 * SampleRate);
    EXPECT_NEAR(static_cast<double>(review.phrase->endSample), End, TinyLanguage::ToneSamples) << "within the last tone";
    EXPECT_GT(review.phrase->score, ScoreScale::HalfAlarmPerHour);
}

TEST_F(TakeReview, WithoutThePhraseItsBestScoreIsTold)
{
    const velox::engine::TakeReview noise = Review(Signals::Noise(TinyLanguage::NoiseAmplitude, 16000, 1));
    EXPECT_EQ(noise.speechBegin, 0);
    EXPECT_EQ(noise.speechEnd, 0);
    EXPECT_EQ(noise.level, 0.0);
    const velox::engine::TakeReview whole = Review(TinyLanguage::SayPhrase());
    const velox::engine::TakeReview half = Review(TinyLanguage::Say(Tones{0, 1}, HalfSecond, HalfSecond));
    EXPECT_FALSE(half.phrase);
    EXPECT_LT(half.bestScore, whole.bestScore);
    EXPECT_GE(whole.bestScore, whole.phrase->score);
}

TEST_F(TakeReview, TheLevelIsThatOfTheSpeech)
{
    const double loud = Review(TinyLanguage::SayPhrase({0.4, 0.0, 0.0})).level;
    const double quiet = Review(TinyLanguage::SayPhrase({0.1, 0.0, 0.0})).level;
    EXPECT_NEAR(loud, Signals::Decibels(0.4) - 3.0, 2.0);
    EXPECT_NEAR(loud - quiet, 12.0, 0.5);
}

TEST_F(TakeReview, ClippingIsCountedAndFound)
{
    const velox::engine::TakeReview clean = Review(TinyLanguage::SayPhrase());
    EXPECT_EQ(clean.clippedSamples, 0U);
    EXPECT_FALSE(clean.firstClipped);
    std::vector<float> samples = TinyLanguage::SayPhrase();
    std::fill_n(samples.begin() + 9000, 7, -1.0F);
    const velox::engine::TakeReview clipped = Review(samples);
    EXPECT_EQ(clipped.status, Status::Success) << "too few to matter";
    EXPECT_EQ(clipped.clippedSamples, 7U);
    EXPECT_EQ(clipped.firstClipped, 9000U);
}

TEST_F(TakeReview, EveryFrameHasItsSpeechQualityAndScore)
{
    const std::vector<float> samples = TinyLanguage::SayPhrase();
    const velox::engine::TakeReview review = Review(samples);
    ASSERT_EQ(review.frames.size(), samples.size() / FrameSize - FrontEnd::FirstFrame + 1);
    const FrameReview& before = review.frames[FrameAt(HalfSecond / 2)];
    const FrameReview& within = review.frames[FrameAt(HalfSecond + TinyLanguage::PhraseSamples / 2)];
    EXPECT_FALSE(before.speech);
    EXPECT_NEAR(before.quality, 0.0F, 4.0F);
    EXPECT_TRUE(within.speech);
    EXPECT_GT(within.quality, 7.8F);

    const auto best = std::max_element(review.frames.begin(), review.frames.end(),
                                       [](const FrameReview& a, const FrameReview& b) { return a.score < b.score; });
    EXPECT_EQ(best->score, review.bestScore);
    const auto end = static_cast<int64_t>(HalfSecond + TinyLanguage::PhraseSamples);
    EXPECT_NEAR(static_cast<double>(FeatureStream::MiddleSample(best - review.frames.begin())), static_cast<double>(end),
                TinyLanguage::ToneSamples)
        << "the score is highest in the last tone";
}

TEST_F(TakeReview, WithoutAModelLevelAndEndsAreJudged)
{
    const velox::engine::TakeReview good = ReviewTake(nullptr, TinyLanguage::SayPhrase());
    EXPECT_EQ(good.status, Status::Success);
    EXPECT_GT(good.speechEnd, good.speechBegin);
    EXPECT_FALSE(good.phrase);
    EXPECT_EQ(good.bestScore, ScoreScale::Least);
    EXPECT_TRUE(good.frames[FrameAt(HalfSecond + TinyLanguage::PhraseSamples / 2)].speech);
    EXPECT_EQ(ReviewTake(nullptr, TinyLanguage::Whisper()).status, Status::TooQuiet);
    EXPECT_EQ(ReviewTake(nullptr, TinyLanguage::Say(Tones{0, 1, 2, 3}, 0, HalfSecond)).status, Status::CutAtStart);
    EXPECT_EQ(ReviewTake(nullptr, {}).status, Status::NoSpeech);
}

} // namespace TakeReviewTests

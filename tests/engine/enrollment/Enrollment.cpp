#include "engine/enrollment/Enrollment.h"

#include "engine/listening/PhraseDetector.h"
#include "engine/listening/PhraseSearch.h"
#include "engine/listening/SpeakerRatio.h"
#include "tests/engine/support/Signals.h"
#include "tests/engine/support/TinyLanguage.h"

#include <gmock/gmock.h>

#include <array>
#include <optional>

namespace EnrollmentTests
{

using namespace velox::engine;
using Tones = std::vector<std::size_t>;

constexpr std::size_t HalfSecond = 8000;
constexpr TinyLanguage::Voice User{0.2, 0.4, 5000.0};
constexpr TinyLanguage::Voice Other{0.2, 0.4, 250.0};

class Enrollment : public testing::Test
{
protected:
    Status Add(const std::vector<float>& samples)
    {
        return enrollment.AddTake(samples);
    }

    void AddThreeTakes()
    {
        for (uint64_t seed = 1; seed <= 3; ++seed)
        {
            ASSERT_EQ(Add(TinyLanguage::SayPhrase(User, seed)), Status::Success);
        }
    }

    /// Everybody's mixtures come from takes of both voices.
    void LearnEverybody()
    {
        std::vector<PhraseFrames> takes;
        for (const TinyLanguage::Voice& voice : {User, Other})
        {
            const auto place = FindPhrase(acoustic.phrase, TinyLanguage::SayPhrase(voice));
            takes.push_back({SpeakerFrames(place->features), place->path.counts, 100.0F});
        }
        acoustic.generic = TrainGenericSpeakers(acoustic.generic.states[0], takes, TinyLanguage::States);
    }

    static std::optional<Detection> Hear(const PhraseModel& model, const std::vector<float>& audio)
    {
        PhraseDetector detector(model);
        std::optional<Detection> heard;
        for (std::size_t start = 0; start + FrameSize <= audio.size(); start += FrameSize)
        {
            if (auto detection = detector.Push(audio.data() + start))
            {
                heard = detection;
            }
        }
        return heard;
    }

    AcousticModel acoustic = TinyLanguage::Acoustic();
    Population population = TinyLanguage::Background();
    velox::engine::Enrollment enrollment{acoustic, population};
};

TEST_F(Enrollment, TheUserIsToldFromOthers)
{
    AddThreeTakes();
    PhraseModel model;
    ASSERT_EQ(enrollment.Finish(&model), Status::Success);
    ASSERT_TRUE(model.speaker);
    const auto user = Hear(model, TinyLanguage::SayPhrase(User, 9));
    const auto other = Hear(model, TinyLanguage::SayPhrase(Other, 9));
    ASSERT_TRUE(user);
    ASSERT_TRUE(other);
    EXPECT_GT(user->score, ScoreScale::HalfAlarmPerHour);
    EXPECT_GT(user->speakerRatio, other->speakerRatio + 0.2F);
    // There are no others in this population to set the threshold by: it is put where the user is.
    model.speaker->threshold = (user->phraseScore - ScoreScale::HalfAlarmPerHour) / ScoreScale::StepsPerFactorE +
                               SpeakerModel::Weight * user->speakerRatio;
    EXPECT_GT(Hear(model, TinyLanguage::SayPhrase(User, 9))->score, Hear(model, TinyLanguage::SayPhrase(Other, 9))->score + 5.0F);
}

TEST_F(Enrollment, TheSameTakesGiveTheSameBytes)
{
    AddThreeTakes();
    PhraseModel first;
    PhraseModel second;
    ASSERT_EQ(enrollment.Finish(&first), Status::Success);
    ASSERT_EQ(enrollment.Finish(&second), Status::Success);
    EXPECT_EQ(WritePhraseModel(first), WritePhraseModel(second));
}

TEST_F(Enrollment, WithoutATakeThereIsNoModel)
{
    PhraseModel model;
    EXPECT_EQ(enrollment.Finish(&model), Status::NoUtterances);
}

TEST_F(Enrollment, TakesThatAreOfNoUseSayWhy)
{
    std::vector<float> clipped = TinyLanguage::SayPhrase({30.0, 0.0, 0.0});
    for (float& sample : clipped)
    {
        sample = std::clamp(sample, -1.0F, 1.0F);
    }
    EXPECT_EQ(Add(std::vector<float>(5 * FrameSize, 0.0F)), Status::UtteranceTooShort);
    EXPECT_EQ(Add(Signals::Noise(TinyLanguage::NoiseAmplitude, 16000, 1)), Status::NoSpeech);
    EXPECT_EQ(Add(clipped), Status::Clipped);
    EXPECT_EQ(Add(TinyLanguage::Say(Tones{3, 2, 1, 0}, HalfSecond, HalfSecond)), Status::PhraseNotFound);
    EXPECT_EQ(Add(TinyLanguage::Say(Tones{0, 1}, HalfSecond, HalfSecond)), Status::PhraseNotFound);

    std::vector<float> twice = TinyLanguage::SayPhrase();
    const std::vector<float> once = twice;
    twice.insert(twice.end(), once.begin(), once.end());
    EXPECT_EQ(Add(twice), Status::TwoPhrases);

    EXPECT_EQ(Add(TinyLanguage::Whisper()), Status::TooQuiet);
    EXPECT_EQ(enrollment.TakeCount(), 0U);
}

TEST_F(Enrollment, ATakeIsLearnedFromWithSilenceAroundIt)
{
    const std::vector<float> padded = WithSilence(std::vector<float>(100, 0.5F));
    ASSERT_EQ(padded.size(), 4800U + 100U + 4800U);
    EXPECT_EQ(padded[4799], 0.0F);
    EXPECT_EQ(padded[4800], 0.5F);
    EXPECT_EQ(padded[4900], 0.0F);
}

TEST_F(Enrollment, ATightlyCutTakeIsUsable)
{
    EXPECT_EQ(Add(TinyLanguage::Say(Tones{0, 1, 2, 3}, 0, HalfSecond)), Status::Success);
    EXPECT_EQ(Add(TinyLanguage::Say(Tones{0, 1, 2, 3}, HalfSecond, 0)), Status::Success);
    EXPECT_EQ(enrollment.TakeCount(), 2U);
}

TEST_F(Enrollment, TakesBeyondTheMostAreCheckedButNotKept)
{
    const std::vector<float> take = TinyLanguage::SayPhrase(User);
    for (std::size_t i = 0; i < velox::engine::Enrollment::MostTakes + 2; ++i)
    {
        EXPECT_EQ(Add(take), Status::Success);
    }
    EXPECT_EQ(enrollment.TakeCount(), velox::engine::Enrollment::MostTakes);
}

/// Two of the four tones get past the search of this phrase.
TEST_F(Enrollment, NearPhrasesAreRefusedAsInListening)
{
    const std::vector<float> half = TinyLanguage::Say(Tones{0, 1}, HalfSecond, HalfSecond);
    acoustic.phrase.searchTail.start = -7.0F;
    acoustic.phrase.tail.start = -7.0F;
    EXPECT_EQ(Add(half), Status::Success) << "with a judge as lenient";
    acoustic.phrase.tail.start = TinyLanguage::Phrase().tail.start;
    EXPECT_EQ(Add(half), Status::PhraseNotFound);
    EXPECT_EQ(Add(TinyLanguage::SayPhrase(User)), Status::Success);
}

TEST_F(Enrollment, ATakeOfAnotherVoiceMakesTheTakesDisagree)
{
    LearnEverybody();
    AddThreeTakes();
    PhraseModel model;
    EXPECT_EQ(enrollment.Finish(&model), Status::Success);
    EXPECT_EQ(enrollment.OddTake(), std::nullopt);
    ASSERT_EQ(Add(Signals::Noise(TinyLanguage::NoiseAmplitude, 16000, 1)), Status::NoSpeech);
    ASSERT_EQ(Add(TinyLanguage::SayPhrase(Other)), Status::Success);
    EXPECT_EQ(enrollment.Finish(&model), Status::TakesDisagree);
    EXPECT_THAT(enrollment.OddTake(), testing::Optional(5U)) << "the refused one counts";
}

TEST_F(Enrollment, TheOrderOfTheTakesChangesNothing)
{
    velox::engine::Enrollment backwards{acoustic, population};
    for (uint64_t seed = 1; seed <= 3; ++seed)
    {
        ASSERT_EQ(Add(TinyLanguage::SayPhrase(User, seed)), Status::Success);
        ASSERT_EQ(backwards.AddTake(TinyLanguage::SayPhrase(User, 4 - seed)), Status::Success);
    }
    PhraseModel first;
    PhraseModel second;
    ASSERT_EQ(enrollment.Finish(&first), Status::Success);
    ASSERT_EQ(backwards.Finish(&second), Status::Success);
    EXPECT_EQ(WritePhraseModel(first), WritePhraseModel(second));
}

TEST_F(Enrollment, OneTakeAloneMakesNoModel)
{
    ASSERT_EQ(Add(TinyLanguage::SayPhrase(User)), Status::Success);
    PhraseModel model;
    EXPECT_EQ(enrollment.Finish(&model), Status::NoUtterances);
    ASSERT_EQ(Add(TinyLanguage::SayPhrase(User, 2)), Status::Success);
    EXPECT_EQ(enrollment.Finish(&model), Status::Success);
}

TEST_F(Enrollment, ATakeThatWouldNotFireIsRemarked)
{
    ASSERT_EQ(Add(TinyLanguage::SayPhrase(User)), Status::Success);
    EXPECT_FALSE(enrollment.LastTakeIsNear());
    acoustic.phrase.tail.start += 6.0F * acoustic.phrase.tail.slope;
    ASSERT_EQ(Add(TinyLanguage::SayPhrase(User)), Status::Success);
    EXPECT_TRUE(enrollment.LastTakeIsNear());
    ASSERT_EQ(Add(Signals::Noise(TinyLanguage::NoiseAmplitude, 16000, 1)), Status::NoSpeech);
    EXPECT_FALSE(enrollment.LastTakeIsNear());
}

TEST_F(Enrollment, ATakeOfAnotherLevelMakesTheTakesDisagree)
{
    const std::vector<float> loud = TinyLanguage::SayPhrase({0.9, 0.0, 0.0});
    std::vector<float> quiet = loud;
    std::transform(quiet.begin(), quiet.end(), quiet.begin(), [](float sample) { return 0.04F * sample; });
    ASSERT_EQ(Add(loud), Status::Success);
    ASSERT_EQ(Add(quiet), Status::Success) << "28 dB below";
    PhraseModel model;
    EXPECT_EQ(enrollment.Finish(&model), Status::TakesDisagree);
}

} // namespace EnrollmentTests

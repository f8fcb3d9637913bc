#include "Enrollment.h"

#include "PhraseDetector.h"
#include "Signals.h"
#include "TinyLanguage.h"

#include <gmock/gmock.h>

#include <array>
#include <optional>

namespace
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
    EXPECT_GT(user->score, other->score + 5.0F);
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

} // namespace

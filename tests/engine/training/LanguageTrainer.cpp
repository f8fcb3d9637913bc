#include "engine/training/LanguageTrainer.h"

#include "engine/listening/PhraseDetector.h"
#include "tests/engine/support/Signals.h"
#include "tests/engine/support/TinyLanguage.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace LanguageTrainerTests
{

using namespace velox::engine;
using Tones = std::vector<std::size_t>;
using testing::Contains;
using testing::HasSubstr;

/// Learned once for all tests, from the material and a take without speech.
const LanguageModels& Trained()
{
    static const std::optional<LanguageModels> models = [] {
        LanguageMaterial material = TinyLanguage::Material();
        material.takes.push_back({Signals::Noise(0.001, SampleRate, 3), "silence.wav", "voice 0", 1.0F});
        return TrainLanguage(material, TinyLanguage::QuickTraining());
    }();
    return *models;
}

/// A training that learns next to nothing, but goes through every step.
struct ShortTraining
{
    LanguageMaterial material = TinyLanguage::Material();
    LanguageOptions options = TinyLanguage::QuickTraining();

    ShortTraining()
    {
        material.takes.resize(3);
        options.batches = 3;
    }

    std::optional<LanguageModels> Run() const
    {
        return TrainLanguage(material, options);
    }
};

std::vector<Detection> Hear(const std::vector<uint8_t>& blob, std::span<const float> audio)
{
    PhraseModel model;
    EXPECT_EQ(ReadPhraseModel(blob.data(), &model), Status::Success);
    PhraseDetector detector(model);
    std::vector<Detection> detections;
    for (std::size_t start = 0; start + FrameSize <= audio.size(); start += FrameSize)
    {
        if (const auto detection = detector.Push(audio.data() + start))
        {
            detections.push_back(*detection);
        }
    }
    return detections;
}

float HighestScore(const std::vector<Detection>& detections)
{
    float highest = 0.0F;
    for (const Detection& detection : detections)
    {
        highest = std::max(highest, detection.score);
    }
    return highest;
}

TEST(LanguageTrainer, LearnsThePhraseFromRecordings)
{
    constexpr std::size_t Before = 16000;
    const TinyLanguage::Voice unseen{0.15, 0.2, 3900.0};
    const auto whole = Hear(Trained().firmwareModel, TinyLanguage::Say(Tones{0, 1, 2, 3}, Before, Before, unseen, 77));
    ASSERT_EQ(whole.size(), 1U);
    EXPECT_GT(static_cast<double>(whole[0].score), Trained().preDefinedThreshold);
    EXPECT_NEAR(static_cast<double>(whole[0].startSample), Before, 0.1 * SampleRate);
    EXPECT_NEAR(static_cast<double>(whole[0].endSample), Before + TinyLanguage::PhraseSamples, 0.1 * SampleRate);
    for (const Tones& tones : {Tones{0, 1}, Tones{2, 3}, Tones{3, 2, 1, 0}})
    {
        SCOPED_TRACE(testing::PrintToString(tones));
        const auto other = Hear(Trained().firmwareModel, TinyLanguage::Say(tones, Before, Before, unseen, 77));
        EXPECT_LT(static_cast<double>(HighestScore(other)), Trained().preDefinedThreshold);
    }
}

TEST(LanguageTrainer, MakesEveryModelThatALanguageNeeds)
{
    const LanguageModels& models = Trained();
    AcousticModel acoustic;
    Population population;
    PhraseModel keyphrase;
    PhraseModel firmware;
    ASSERT_EQ(ReadAcousticModel(models.acousticModel.data(), &acoustic), Status::Success);
    ASSERT_EQ(ReadPopulation(models.znormPopulation.data(), &population), Status::Success);
    ASSERT_EQ(ReadPhraseModel(models.keyphraseModel.data(), &keyphrase), Status::Success);
    ASSERT_EQ(ReadPhraseModel(models.firmwareModel.data(), &firmware), Status::Success);
    EXPECT_TRUE(population.Fits(acoustic));
    EXPECT_FALSE(population.peaks.empty());
    EXPECT_NEAR(firmware.tail.start - keyphrase.tail.start, std::log(4.0F) * firmware.tail.slope, 1e-4F);
    EXPECT_FALSE(firmware.speaker);
    EXPECT_LE(models.firmwareModel.size(), 160U * 1024U);
    EXPECT_FLOAT_EQ(static_cast<float>(models.preDefinedThreshold), 100.0F);
    EXPECT_NEAR(models.backgroundHours, 70.0 / 3600.0, 0.01);
}

TEST(LanguageTrainer, LittleMaterialIsWarnedOf)
{
    EXPECT_THAT(Trained().warnings, Contains(HasSubstr("Only 4 voices")));
    EXPECT_THAT(Trained().warnings, Contains(HasSubstr("Only 1 minutes")));
}

TEST(LanguageTrainer, UselessTakesAreLeftOutAndNamed)
{
    EXPECT_THAT(Trained().warnings, Contains("silence.wav is left out: it is too quiet."));
}

TEST(LanguageTrainer, EveryTakeIsScoredByANetworkThatHadNotHeardItsVoice)
{
    const std::vector<float>& scores = Trained().heldOutScores;
    ASSERT_EQ(scores.size(), TinyLanguage::Material().takes.size());
    EXPECT_THAT(scores, testing::Each(testing::Gt(30.0F)));
}

TEST(LanguageTrainer, TheResultDoesNotDependOnTheThreads)
{
    ShortTraining training;
    training.options.backgroundCopies = 1;
    const auto one = training.Run();
    training.options.threads = 3;
    const auto three = training.Run();
    ASSERT_TRUE(one && three);
    EXPECT_EQ(one->acousticModel, three->acousticModel);
    EXPECT_EQ(one->znormPopulation, three->znormPopulation);
    EXPECT_EQ(one->keyphraseModel, three->keyphraseModel);
    EXPECT_EQ(one->firmwareModel, three->firmwareModel);
}

TEST(LanguageTrainer, CanBeCancelledAtAnyStep)
{
    ShortTraining training;
    int steps = 0;
    training.options.progress = [&](double) {
        ++steps;
        return true;
    };
    ASSERT_TRUE(training.Run());
    ASSERT_GT(steps, 3);
    for (const int last : {1, 3, steps})
    {
        int left = last;
        training.options.progress = [&](double) {
            return --left > 0;
        };
        EXPECT_FALSE(training.Run()) << last;
    }
}

TEST(LanguageTrainer, TooLittleMaterialIsRefused)
{
    ShortTraining oneTake;
    oneTake.material.takes.resize(1);
    EXPECT_THROW(oneTake.Run(), std::invalid_argument);
    ShortTraining littleBackground;
    littleBackground.material.background.resize(5);
    EXPECT_THROW(littleBackground.Run(), std::invalid_argument);
}

} // namespace LanguageTrainerTests

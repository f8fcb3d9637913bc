#include "engine/training/PopulationTraining.h"

#include "tests/engine/support/TinyLanguage.h"

#include <gmock/gmock.h>

namespace PopulationTrainingTests
{

using namespace velox::engine;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// The later the place, the more it is like the phrase.
std::vector<PhrasePlace> Places(std::size_t count)
{
    std::vector<PhrasePlace> places(count);
    for (std::size_t i = 0; i < count; ++i)
    {
        const auto frames = static_cast<int32_t>(i) + 1;
        places[i].features.resize(TinyLanguage::States * (i + 1));
        places[i].path.counts.assign(TinyLanguage::States, frames);
        places[i].path.fits.assign(TinyLanguage::States, static_cast<float>(i) / 50.0F - 1.0F);
    }
    return places;
}

std::vector<PreparedTake> TakesOf(const std::vector<std::string>& voices)
{
    std::vector<PreparedTake> takes;
    for (const std::string& voice : voices)
    {
        takes.emplace_back().voice = voice;
    }
    return takes;
}

TEST(PopulationTraining, ThosePeaksAreKeptThatTheJudgeTakesForThePhraseMost)
{
    const Population population =
        MakePopulation(TinyLanguage::Phrase(), {Places(Population::MostPeaks + 5), 0.25, {}, {}, {}, {}});
    EXPECT_DOUBLE_EQ(population.hours, 0.25);
    ASSERT_THAT(population.peaks, SizeIs(Population::MostPeaks));
    EXPECT_THAT(population.peaks.front().counts, Each(65));
    EXPECT_THAT(population.peaks.front().features, SizeIs(65 * TinyLanguage::States));
    EXPECT_THAT(population.peaks.back().counts, Each(6));
    // The mean ratio of every state is 64 / 50 - 1, which the phrase's judge holds against 3.
    const float logOdds = 0.28F + 0.5F * (0.28F - 3.0F);
    EXPECT_NEAR(population.peaks.front().factors, TinyLanguage::Phrase().tail.FactorsBelowHalf(logOdds), 1e-4F);
}

TEST(PopulationTraining, AFewPeaksAreAllKept)
{
    EXPECT_THAT(MakePopulation(TinyLanguage::Phrase(), {Places(3), 0.25, {}, {}, {}, {}}).peaks, SizeIs(3));
}

TEST(PopulationTraining, OneTakeOfEachVoiceIsKeptThatThePhraseWasFoundIn)
{
    const std::vector<PreparedTake> takes = TakesOf({"a", "a", "b", "c", "c"});
    std::vector<PhrasePlace> places = Places(5);
    places[0].features.clear(); // too short
    places[2].features.clear();
    const Population population =
        MakePopulation(TinyLanguage::Phrase(), {{}, 0.25, takes, places, {1.0F, 2.0F, 3.0F, 4.0F, 5.0F}, {}});
    ASSERT_THAT(population.speakers, SizeIs(2));
    EXPECT_THAT(population.speakers[0].counts, Each(2));
    EXPECT_THAT(population.speakers[1].counts, Each(4));
    EXPECT_EQ(population.speakers[0].factors, 2.0F);
    EXPECT_EQ(population.speakers[1].factors, 4.0F);
}

TEST(PopulationTraining, TalkersComeFromAllOverTheBackground)
{
    std::vector<std::vector<float>> background;
    for (int i = 0; i < 16; ++i)
    {
        background.emplace_back(Population::MostTalkerSamples, static_cast<float>(i) / 16.0F);
    }
    background[14].assign(Population::MostTalkerSamples, -1.0F);
    background[14][7] = -1.25F; // a resampler goes beyond
    const Population population = MakePopulation(TinyLanguage::Phrase(), {{}, 0.25, {}, {}, {}, background});
    ASSERT_THAT(population.talkers, SizeIs(Population::MostTalkers));
    for (std::size_t i = 0; i < Population::MostTalkers; ++i)
    {
        EXPECT_EQ(population.talkers[i], i < 7 ? background[2 * i] : std::vector(background[14].size(), -1.0F)) << i;
    }
}

TEST(PopulationTraining, ShortRecordingsAreJoinedForATalker)
{
    const std::vector<std::vector<float>> background(8, std::vector<float>(3, 0.5F));
    const Population population = MakePopulation(TinyLanguage::Phrase(), {{}, 0.25, {}, {}, {}, background});
    EXPECT_THAT(population.talkers, Each(ElementsAre(0.5F, 0.5F, 0.5F)));
    EXPECT_THAT(MakePopulation(TinyLanguage::Phrase(), {{}, 0.25, {}, {}, {}, {}}).talkers, IsEmpty());
}

} // namespace PopulationTrainingTests

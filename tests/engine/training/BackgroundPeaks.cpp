#include "engine/training/BackgroundPeaks.h"

#include "tests/engine/support/TinyLanguage.h"

#include <gmock/gmock.h>

namespace
{

using namespace velox::engine;
using testing::Each;
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
        places[i].path.sums.assign(TinyLanguage::States, static_cast<float>(frames) * (static_cast<float>(i) / 50.0F - 1.0F));
    }
    return places;
}

TEST(BackgroundPeaks, ShortRecordingsAreHeardOneAfterTheOther)
{
    // 1.1 s each: alone each would be a block of its own; together they are 11 s, or six blocks of two seconds.
    std::vector<std::vector<float>> recordings(10, TinyLanguage::SayPhrase());
    for (std::vector<float>& recording : recordings)
    {
        recording.erase(recording.begin(), recording.begin() + 4000);
        recording.resize(17600);
    }
    WorkerPool pool(2);
    EXPECT_THAT(FindBackgroundPeaks(TinyLanguage::Phrase(),
                                    std::vector<std::span<const float>>(recordings.begin(), recordings.end()), &pool),
                SizeIs(6));
}

TEST(BackgroundPeaks, ThePopulationIsOfThosePeaksThatTheJudgeTakesForThePhraseMost)
{
    const Population population = MakePopulation(TinyLanguage::Phrase(), Places(Population::MostPeaks + 5), 0.25);
    EXPECT_DOUBLE_EQ(population.hours, 0.25);
    ASSERT_THAT(population.peaks, SizeIs(Population::MostPeaks));
    EXPECT_THAT(population.peaks.front().counts, Each(65));
    EXPECT_THAT(population.peaks.front().features, SizeIs(65 * TinyLanguage::States));
    EXPECT_THAT(population.peaks.back().counts, Each(6));
    // The mean ratio of every state is 64 / 50 - 1, which the phrase's judge holds against 3.
    const float logOdds = 0.28F + 0.5F * (0.28F - 3.0F);
    EXPECT_NEAR(population.peaks.front().factors, TinyLanguage::Phrase().tail.FactorsBelowHalf(logOdds), 1e-4F);
}

TEST(BackgroundPeaks, AFewPeaksAreAllKept)
{
    EXPECT_THAT(MakePopulation(TinyLanguage::Phrase(), Places(3), 0.25).peaks, SizeIs(3));
}

} // namespace

#include "engine/training/BackgroundPeaks.h"

#include "tests/engine/support/TinyLanguage.h"

#include <gmock/gmock.h>

namespace
{

using namespace velox::engine;
using testing::ElementsAre;
using testing::SizeIs;

std::vector<PhrasePlace> Places(std::size_t count)
{
    std::vector<PhrasePlace> places(count);
    for (std::size_t i = 0; i < count; ++i)
    {
        places[i].score = static_cast<float>(i) / 10.0F;
        places[i].features.resize(i + 1);
        places[i].path.counts = {static_cast<int32_t>(i)};
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
    EXPECT_THAT(FindBackgroundPeaks(TinyLanguage::Phrase(), recordings, &pool), SizeIs(6));
}

TEST(BackgroundPeaks, TheTailOfUnheardBackgroundStartsAboveNineTenthsOfThePeaks)
{
    EXPECT_FLOAT_EQ(MeasureTail(Places(11)).start, 0.9F + 0.3F);
}

TEST(BackgroundPeaks, ThePopulationIsOfTheHighestPeaks)
{
    const Population population = MakePopulation(Places(Population::MostPeaks + 5), 0.25);
    EXPECT_DOUBLE_EQ(population.hours, 0.25);
    ASSERT_THAT(population.peaks, SizeIs(Population::MostPeaks));
    EXPECT_FLOAT_EQ(population.peaks.front().score, 6.4F);
    EXPECT_THAT(population.peaks.front().counts, ElementsAre(64));
    EXPECT_THAT(population.peaks.front().features, SizeIs(65));
    EXPECT_FLOAT_EQ(population.peaks.back().score, 0.5F);
}

TEST(BackgroundPeaks, AFewPeaksAreAllKept)
{
    EXPECT_THAT(MakePopulation(Places(3), 0.25).peaks, SizeIs(3));
}

} // namespace

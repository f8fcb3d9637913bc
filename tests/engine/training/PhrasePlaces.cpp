#include "engine/training/PhrasePlaces.h"

#include "engine/training/TakeAlignment.h"
#include "tests/engine/support/TinyLanguage.h"

#include <gmock/gmock.h>

namespace PhrasePlacesTests
{

using namespace velox::engine;
using testing::IsEmpty;
using testing::SizeIs;

struct Heard
{
    std::vector<PreparedTake> takes;
    PhraseAlignment alignment;
    std::vector<AugmentationPlan> plans;
    std::vector<std::vector<float>> background = TinyLanguage::Material().background;

    Heard()
    {
        std::vector<std::string> warnings;
        const LanguageMaterial material = TinyLanguage::Material();
        takes = PrepareTakes(material.takes, &warnings);
        takes.resize(3);
        alignment = AlignPreparedTakes(takes, 1);
        AugmentationPlan buried;
        buried.noise = NoisePlan{-30.0, {}, 0, 0.0, 1};
        for (std::size_t i = 0; i < takes.size(); ++i)
        {
            plans.push_back({});
            plans.push_back(buried);
        }
    }

    PhraseRecordings Recordings(std::vector<std::size_t> wanted = {0, 1, 2}) const
    {
        return {takes, alignment, plans, background, std::move(wanted)};
    }

    PhrasePlaces Find(std::vector<std::size_t> wanted = {0, 1, 2}) const
    {
        WorkerPool pool(1);
        PhrasePlaces places;
        FindPhrasePlaces(TinyLanguage::Phrase(), Recordings(std::move(wanted)), &pool, &places);
        return places;
    }

    std::vector<PhrasePlace> FindDamaged(int threads = 1) const
    {
        WorkerPool pool(threads);
        return FindDamagedPlaces(TinyLanguage::Phrase(), Recordings(), 1, &pool);
    }
};

TEST(PhrasePlaces, TakesAndCopiesScoreHighAndDamagedTakesLow)
{
    const Heard heard;
    const PhrasePlaces places = heard.Find();
    ASSERT_THAT(places.takes, SizeIs(3));
    ASSERT_THAT(places.copies, SizeIs(6));
    for (std::size_t i = 0; i < 3; ++i)
    {
        EXPECT_NEAR(places.takes[i].score, Decoder::MostRatio, 0.5F);
        EXPECT_NEAR(places.copies[2 * i].score, places.takes[i].score, 0.1F);
        EXPECT_LT(places.copies[2 * i + 1].score, places.takes[i].score - 1.0F) << "a copy is made again as its plan says";
    }
    const std::vector<PhrasePlace> damaged = heard.FindDamaged();
    ASSERT_THAT(damaged, SizeIs(18));
    double mean = 0.0;
    for (const PhrasePlace& place : damaged)
    {
        mean += static_cast<double>(place.score) / 18.0;
    }
    EXPECT_LT(mean, static_cast<double>(Decoder::MostRatio) - 1.0);
}

TEST(PhrasePlaces, OnlyTheTakesWantedAreLookedAt)
{
    const PhrasePlaces places = Heard().Find({1});
    ASSERT_THAT(places.takes, SizeIs(3));
    EXPECT_THAT(places.takes[0].features, IsEmpty());
    EXPECT_THAT(places.takes[1].features, testing::Not(IsEmpty()));
    EXPECT_THAT(places.copies[2].features, testing::Not(IsEmpty()));
    EXPECT_THAT(places.copies[4].features, IsEmpty());
}

TEST(PhrasePlaces, ATakeThatIsTooShortHasPlacesWithoutFeatures)
{
    Heard heard;
    heard.alignment.labels[1].clear();
    const PhrasePlaces places = heard.Find();
    EXPECT_THAT(places.takes[1].features, IsEmpty());
    EXPECT_THAT(places.copies[2].features, IsEmpty());
    EXPECT_THAT(places.takes[0].features, testing::Not(IsEmpty()));
    EXPECT_THAT(heard.FindDamaged(), SizeIs(12));
}

TEST(PhrasePlaces, TheThreadsChangeNothing)
{
    const Heard heard;
    const std::vector<PhrasePlace> one = heard.FindDamaged(1);
    const std::vector<PhrasePlace> three = heard.FindDamaged(3);
    for (std::size_t i = 0; i < one.size(); ++i)
    {
        EXPECT_EQ(one[i].score, three[i].score) << i;
    }
}

} // namespace PhrasePlacesTests

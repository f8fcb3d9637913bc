#include "engine/training/PhrasePlaces.h"

#include "engine/training/TakeAlignment.h"
#include "tests/engine/support/TinyLanguage.h"

#include <gmock/gmock.h>

namespace
{

using namespace velox::engine;
using testing::IsEmpty;
using testing::SizeIs;

struct Heard
{
    std::vector<PreparedTake> takes;
    PhraseAlignment alignment;
    std::vector<AugmentationPlan> plans;

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

    PhrasePlaces Find(int threads = 1) const
    {
        WorkerPool pool(threads);
        return FindPhrasePlaces(TinyLanguage::Phrase(), takes, alignment, plans, TinyLanguage::Material().background, 1, &pool);
    }
};

TEST(PhrasePlaces, TakesAndCopiesScoreHighAndDamagedTakesLow)
{
    const PhrasePlaces places = Heard().Find();
    ASSERT_THAT(places.takes, SizeIs(3));
    ASSERT_THAT(places.copies, SizeIs(6));
    ASSERT_THAT(places.damaged, SizeIs(18));
    double damaged = 0.0;
    for (const PhrasePlace& place : places.damaged)
    {
        damaged += static_cast<double>(place.score) / 18.0;
    }
    for (std::size_t i = 0; i < 3; ++i)
    {
        EXPECT_NEAR(places.takes[i].score, Decoder::MostRatio, 0.5F);
        EXPECT_NEAR(places.copies[2 * i].score, places.takes[i].score, 0.1F);
        EXPECT_LT(places.copies[2 * i + 1].score, places.takes[i].score - 1.0F) << "a copy is made again as its plan says";
    }
    EXPECT_LT(damaged, static_cast<double>(Decoder::MostRatio) - 1.0);
}

TEST(PhrasePlaces, ATakeThatIsTooShortHasPlacesWithoutFeatures)
{
    Heard heard;
    heard.alignment.labels[1].clear();
    const PhrasePlaces places = heard.Find();
    EXPECT_THAT(places.takes[1].features, IsEmpty());
    EXPECT_THAT(places.copies[2].features, IsEmpty());
    EXPECT_THAT(places.takes[0].features, testing::Not(IsEmpty()));
    EXPECT_THAT(places.damaged, SizeIs(12));
}

TEST(PhrasePlaces, TheThreadsChangeNothing)
{
    const Heard heard;
    const PhrasePlaces one = heard.Find(1);
    const PhrasePlaces three = heard.Find(3);
    for (std::size_t i = 0; i < one.damaged.size(); ++i)
    {
        EXPECT_EQ(one.damaged[i].score, three.damaged[i].score) << i;
    }
}

} // namespace

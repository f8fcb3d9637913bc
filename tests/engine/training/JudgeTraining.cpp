#include "engine/training/JudgeTraining.h"

#include "engine/listening/PathDescription.h"
#include "tests/engine/support/TinyLanguage.h"

#include <gmock/gmock.h>

namespace JudgeTrainingTests
{

using namespace velox::engine;

/// A path through four states, the second of which fits so well.
PhrasePlace Place(float second)
{
    PhrasePlace place;
    place.path.counts.assign(TinyLanguage::States, TinyLanguage::ToneFrames);
    place.path.fits = {3.0F, second, 2.5F, 2.9F};
    place.score = SoftMinimumScore(place.path);
    place.features.resize(TinyLanguage::States * TinyLanguage::ToneFrames);
    return place;
}

float LogOdds(const LogisticRegression& judge, const PhrasePlace& place)
{
    return judge.LogOdds(DescribePath(place.path));
}

TEST(JudgeTraining, PhrasesAreToldFromDamagedOnesAndFromBackground)
{
    HeldOutPlaces places;
    for (int i = 0; i < 20; ++i)
    {
        const float small = 0.01F * static_cast<float>(i);
        places.phrases.takes.push_back(Place(2.0F + small));
        places.phrases.copies.push_back(Place(1.8F + small));
        places.damaged.push_back(Place(-0.5F + small));
        places.background.push_back(Place(-2.5F + small));
    }
    const LogisticRegression judge = TrainJudge(places);
    EXPECT_GT(LogOdds(judge, Place(1.8F)), 0.0F);
    EXPECT_LT(LogOdds(judge, Place(-0.5F)), 0.0F);
    EXPECT_LT(LogOdds(judge, Place(-2.5F)), LogOdds(judge, Place(-0.5F)));
}

TEST(JudgeTraining, TakesThatWereTooShortAreNoExamples)
{
    HeldOutPlaces places;
    places.phrases.takes.assign(5, Place(2.0F));
    places.damaged.assign(5, Place(-1.0F));
    places.background.assign(5, Place(-3.0F));
    const LogisticRegression judge = TrainJudge(places);
    places.phrases.copies.resize(3);
    EXPECT_EQ(TrainJudge(places).weights, judge.weights);
}

TEST(JudgeTraining, WithoutExamplesAllIsAlike)
{
    const LogisticRegression judge = TrainJudge({});
    EXPECT_EQ(LogOdds(judge, Place(-4.0F)), 0.0F);
    EXPECT_EQ(LogOdds(judge, Place(2.0F)), 0.0F);
}

} // namespace JudgeTrainingTests

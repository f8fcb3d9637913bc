#include "engine/training/NearCheckTraining.h"

#include "engine/listening/PathDescription.h"
#include "tests/engine/support/TinyLanguage.h"

#include <gmock/gmock.h>

namespace
{

using namespace velox::engine;

/// A path through four states, the second of which has this mean.
PhrasePlace Place(float second)
{
    PhrasePlace place;
    place.path.counts.assign(TinyLanguage::States, TinyLanguage::ToneFrames);
    for (const float mean : {3.0F, second, 2.5F, 2.9F})
    {
        place.path.sums.push_back(mean * TinyLanguage::ToneFrames);
    }
    place.path.lowest = {second - 0.5F, second};
    place.score = SoftMinimumScore(place.path);
    place.features.resize(TinyLanguage::States * TinyLanguage::ToneFrames);
    return place;
}

TEST(NearCheckTraining, PhrasesPassAndDamagedOnesDoNot)
{
    PhrasePlaces places;
    for (int i = 0; i < 20; ++i)
    {
        const float small = 0.01F * static_cast<float>(i);
        places.takes.push_back(Place(2.0F + small));
        places.copies.push_back(Place(1.8F + small));
        places.damaged.push_back(Place(-1.5F + small));
    }
    const PhraseModel model = TinyLanguage::Phrase();
    const NearPhraseCheck check = TrainNearCheck(model, places);
    EXPECT_GE(NearPhraseMargin(check, Place(2.0F).path, model.states), 0.0F);
    EXPECT_LT(NearPhraseMargin(check, Place(-1.5F).path, model.states), 0.0F);
    // The cut lies on the lowest of the examples, of which less than one in three hundred is refused.
    EXPECT_NEAR(NearPhraseMargin(check, Place(1.8F).path, model.states), 0.0F, 1e-3F);
}

TEST(NearCheckTraining, OnlyWhatTheFirstStageLetsThroughIsLearnedFrom)
{
    PhrasePlaces places;
    places.takes.assign(5, Place(2.0F));
    places.damaged.assign(5, Place(-4.0F));
    PhraseModel model = TinyLanguage::Phrase();
    model.tail.start = places.damaged.front().score;
    const NearPhraseCheck check = TrainNearCheck(model, places);
    EXPECT_TRUE(check.classifier.weights.isZero());
}

TEST(NearCheckTraining, WithoutExamplesEverythingPasses)
{
    const PhraseModel model = TinyLanguage::Phrase();
    const NearPhraseCheck check = TrainNearCheck(model, {});
    EXPECT_GE(NearPhraseMargin(check, Place(-4.0F).path, model.states), 0.0F);
}

} // namespace

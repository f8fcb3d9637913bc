#include "engine/training/HeldOutSearch.h"

#include "engine/training/TakeAlignment.h"
#include "tests/engine/support/TinyLanguage.h"

#include <gmock/gmock.h>

namespace HeldOutSearchTests
{

using namespace velox::engine;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

TEST(HeldOutSearch, EachHalfIsSearchedByTheNetworkThatDidNotLearnFromIt)
{
    std::vector<std::string> warnings;
    const LanguageMaterial material = TinyLanguage::Material();
    std::vector<PreparedTake> takes = PrepareTakes(material.takes, &warnings);
    takes.resize(4);
    const PhraseAlignment alignment = AlignPreparedTakes(takes, 1);
    const std::vector<AugmentationPlan> plans;
    const Folds folds{{0, 0, 1, 1}, {0, 0, 0, 1, 1, 1, 1}};
    WorkerPool pool(2);
    HeldOutPlaces places;
    const SearchedMaterial searched{takes, alignment, plans, material.background, folds, 1};

    SearchHeldOut(TinyLanguage::Phrase(), 0, searched, &pool, &places);
    EXPECT_THAT(places.phrases.takes[1].features, Not(IsEmpty()));
    EXPECT_THAT(places.phrases.takes[2].features, IsEmpty());
    EXPECT_THAT(places.damaged, SizeIs(12));
    const std::size_t ofThree = places.background.size();

    SearchHeldOut(TinyLanguage::Phrase(), 1, searched, &pool, &places);
    EXPECT_THAT(places.phrases.takes[1].features, Not(IsEmpty()));
    EXPECT_THAT(places.phrases.takes[2].features, Not(IsEmpty()));
    EXPECT_THAT(places.damaged, SizeIs(24));
    EXPECT_GT(places.background.size(), 2 * ofThree) << "four recordings more";
}

} // namespace HeldOutSearchTests

#include "engine/training/TrainingMaterial.h"

#include "engine/training/CropSampler.h"
#include "engine/training/FeatureMeasurement.h"
#include "engine/training/TakeAlignment.h"
#include "tests/engine/support/TinyLanguage.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace TrainingMaterialTests
{

using namespace velox::engine;
using testing::Each;
using testing::Eq;
using testing::SizeIs;

struct Language
{
    LanguageMaterial material = TinyLanguage::Material();
    LanguageOptions options = TinyLanguage::QuickTraining();
    std::vector<PreparedTake> takes;
    FeatureStatistics statistics;
    PhraseAlignment alignment;

    Language()
    {
        options.copies = 2;
        options.backgroundCopies = 1;
        std::vector<std::string> warnings;
        takes = PrepareTakes(material.takes, &warnings);
        statistics = MeasureStatistics(material.background, takes);
        alignment = AlignPreparedTakes(takes, 1);
    }

    TrainingMaterial Make(int threads = 1) const
    {
        WorkerPool pool(threads);
        return MakeTrainingMaterial(takes, alignment, statistics, material.background, Folds::Of(takes, material.background),
                                    options, &pool);
    }
};

TEST(TrainingMaterial, TakesAndBackgroundComeWithTheirCopies)
{
    const Language language;
    const TrainingMaterial made = language.Make();
    EXPECT_THAT(made.plans, SizeIs(language.takes.size() * 2));
    const auto fromTakes =
        std::count_if(made.sequences.begin(), made.sequences.end(), [](const auto& one) { return one.isTake; });
    EXPECT_EQ(static_cast<std::size_t>(fromTakes), language.takes.size() * (3 + 6)) << "and damaged copies";
    EXPECT_EQ(made.sequences.size() - static_cast<std::size_t>(fromTakes), language.material.background.size() * 2);
}

TEST(TrainingMaterial, LabelsNameThePhraseInTakesAndNothingInBackground)
{
    const Language language;
    const auto background = static_cast<int>(language.alignment.states);
    int number = 0; // three whole ones of each take, six damaged ones
    int damagedAndIncomplete = 0;
    for (const TrainingSequence& sequence : language.Make().sequences)
    {
        ASSERT_EQ(sequence.labels.size(), static_cast<std::size_t>(sequence.Frames()));
        if (!sequence.isTake)
        {
            EXPECT_THAT(sequence.labels, Each(Eq(background)));
            continue;
        }
        EXPECT_EQ(sequence.labels.front(), background);
        EXPECT_EQ(sequence.labels.back(), background);
        int missing = 0;
        for (int state = 0; state < background; ++state)
        {
            missing += std::ranges::find(sequence.labels, state) == sequence.labels.end() ? 1 : 0;
        }
        const bool isDamaged = number++ % 9 >= 3;
        damagedAndIncomplete += isDamaged && missing > 0 ? 1 : 0;
        EXPECT_TRUE(isDamaged || missing == 0) << number;
        EXPECT_LT(missing, background);
    }
    EXPECT_GT(damagedAndIncomplete, 0) << "what was replaced is background";
}

TEST(TrainingMaterial, BackgroundIsDrawnByItsLengthHoweverItIsCutIntoRecordings)
{
    Language language;
    language.options.backgroundCopies = 0;
    auto& background = language.material.background;
    const std::vector<float> whole = background.front(); // ten seconds
    background = {whole};
    for (std::size_t second = 0; second < 10; ++second)
    {
        const auto begin = whole.begin() + static_cast<std::ptrdiff_t>(second * SampleRate);
        background.emplace_back(begin, begin + SampleRate);
    }
    const TrainingMaterial made = language.Make();
    const CropSampler sampler(made.sequences, static_cast<int>(language.alignment.states));
    RandomStream random(1);
    int fromShort = 0;
    constexpr int Draws = 2000;
    for (int i = 0; i < Draws; ++i)
    {
        fromShort += sampler.Draw(false, 120, &random).sequence->Sequence().Frames() < 200 ? 1 : 0;
    }
    EXPECT_NEAR(static_cast<double>(fromShort) / Draws, 0.5, 0.05);
}

TEST(TrainingMaterial, ThePhraseOfACopyLiesBehindWhatWasHeardBefore)
{
    Language language;
    language.options.copies = 20;
    const TrainingMaterial made = language.Make();
    const auto background = static_cast<int>(language.alignment.states);
    int leads = 0;
    for (std::size_t i = 0; i < 20; ++i)
    {
        const AugmentationPlan& plan = made.plans[i];
        const std::vector<int>& labels = made.sequences[i + 1].labels;
        const auto begin = std::find_if(labels.begin(), labels.end(), [=](int label) { return label != background; });
        const double takeBegin = static_cast<double>(language.takes[0].begin + LeadSamples(plan) / FrameSize);
        EXPECT_NEAR(static_cast<double>(begin - labels.begin()), takeBegin / plan.speed, 2.0) << i;
        leads += plan.lead.has_value() ? 1 : 0;
    }
    EXPECT_GT(leads, 0);
}

TEST(TrainingMaterial, ATakeThatIsTooShortGivesNothing)
{
    Language language;
    language.alignment.labels[0].clear();
    const TrainingMaterial made = language.Make();
    const auto fromTakes =
        std::count_if(made.sequences.begin(), made.sequences.end(), [](const auto& one) { return one.isTake; });
    EXPECT_EQ(static_cast<std::size_t>(fromTakes), (language.takes.size() - 1) * (3 + 6));
}

TEST(TrainingMaterial, TheThreadsChangeNothing)
{
    const Language language;
    const TrainingMaterial one = language.Make(1);
    const TrainingMaterial three = language.Make(3);
    ASSERT_EQ(one.sequences.size(), three.sequences.size());
    for (std::size_t i = 0; i < one.sequences.size(); ++i)
    {
        EXPECT_EQ(one.sequences[i].labels, three.sequences[i].labels);
        EXPECT_EQ(one.sequences[i].features, three.sequences[i].features);
    }
}

} // namespace TrainingMaterialTests

#include "console/listening/ListeningCurves.h"

#include "engine/enrollment/TakeReview.h"
#include "tests/engine/support/TinyLanguage.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace
{

using namespace velox;
using namespace velox::console;

TEST(ListeningCurves, AShortRecordingsCurvesAreItsReview)
{
    const engine::PhraseModel model = TinyLanguage::Phrase();
    const std::vector<float> samples = TinyLanguage::SayPhrase();
    const auto frames = engine::ReviewTake(&model, samples).frames;
    const ListeningCurves curves = CurvesOf(model, samples);
    ASSERT_EQ(curves.score.values.size(), frames.size());
    ASSERT_EQ(curves.quality.values.size(), frames.size());
    EXPECT_DOUBLE_EQ(curves.score.secondsPerValue, 0.01);
    for (std::size_t i = 0; i < frames.size(); ++i)
    {
        EXPECT_EQ(curves.score.values[i], frames[i].score);
        EXPECT_EQ(curves.quality.values[i], frames[i].quality);
    }
}

TEST(ListeningCurves, ALongRecordingIsThinnedAndKeepsItsPeak)
{
    const engine::PhraseModel model = TinyLanguage::Phrase();
    std::vector<float> samples = TinyLanguage::SayPhrase();
    const auto best = engine::ReviewTake(&model, samples).bestScore;
    samples.resize(60 * engine::SampleRate, 0.0F);
    const ListeningCurves curves = CurvesOf(model, samples);
    EXPECT_LE(curves.score.values.size(), MostWaveStretches);
    EXPECT_EQ(curves.score.values.size(), curves.quality.values.size());
    EXPECT_EQ(std::ranges::max(curves.score.values), best);
    EXPECT_NEAR(curves.score.secondsPerValue * static_cast<double>(curves.score.values.size()), 60.0, 0.2);
}

} // namespace

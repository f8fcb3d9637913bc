#include "evaluation/Trial.h"

#include "tests/engine/support/TinyLanguage.h"

#include <gtest/gtest.h>

namespace TakeTrialTests
{

using namespace velox;
using namespace velox::evaluation;

Clip Saying(const std::vector<std::size_t>& tones, const std::string& path)
{
    return {{"dev", "a", "take", "formant", "m1", "m", path}, TinyLanguage::Say(tones, 4'000, 4'000)};
}

TEST(TakeTrial, TakesAreHeldAgainstTheKeyPhraseModel)
{
    Language language;
    language.keyphrase = TinyLanguage::Phrase();
    language.blobs.preDefinedThreshold = 70.0;
    Judged judged;
    judged.phrase = "a";
    judged.takes = {Saying({0, 1, 2, 3}, "right.wav"), Saying({3, 2, 1, 0}, "reversed.wav")};
    judged.otherTakes = {Saying({4, 5, 6, 7}, "other.wav")};
    judged.background = {Saying({0, 1, 2, 3}, "lucky.wav"), Saying({4, 5}, "plain.wav"), Saying({6}, "more.wav")};
    engine::WorkerPool pool(1);
    Report report;
    TryTakes(language, judged, &pool, &report);
    EXPECT_EQ(report.Worst("a: take with the phrase refused"), 50.0);
    EXPECT_EQ(report.Worst("a: take of another phrase accepted"), 0.0);
    EXPECT_NEAR(report.Worst("a: recording of other speech accepted").value(), 100.0 / 3.0, 1e-9);
    EXPECT_EQ(report.Worst("a: take without the phrase accepted"), 25.0);
    EXPECT_EQ(report.Notes(), "accepted as a take: lucky.wav\n");
}

} // namespace TakeTrialTests

#include "evaluation/Trial.h"

#include "tests/engine/support/TinyLanguage.h"

#include <gtest/gtest.h>

namespace UserTrialTests
{

using namespace velox;
using namespace velox::evaluation;

TEST(UserTrial, AUserWhoCannotBeEnrolledIsMissedEverywhere)
{
    Language language;
    language.acoustic = TinyLanguage::Acoustic();
    language.blobs.userDefinedThreshold = 70.0;
    Judged judged;
    judged.phrase = "a";
    judged.takes.assign(8, {{"dev", "a", "take", "natural", "m1", "m", "silent.wav"}, std::vector<float>(16'000)});
    judged.talkers = {TinyLanguage::Whisper()};
    engine::WorkerPool pool(1);
    Report report;
    TryUsers(language, judged, &pool, &report);
    EXPECT_EQ(report.Worst("a: user, natural, cannot be enrolled"), 100.0);
    for (const char* condition : {"clean", "babble 10 dB", "room", "tempo 0.8", "after speech"})
    {
        EXPECT_EQ(report.Worst(std::string("a: user, natural, missed, ") + condition), 100.0) << condition;
    }
}

TEST(UserTrial, WithoutUsersNothingIsReached)
{
    Judged judged;
    judged.phrase = "a";
    judged.talkers = {TinyLanguage::Whisper()};
    engine::WorkerPool pool(1);
    Report report;
    TryUsers({}, judged, &pool, &report);
    EXPECT_EQ(report.Worst("a: user, natural, cannot be enrolled"), 100.0);
    EXPECT_EQ(report.Worst("a: user, natural, missed, clean"), 100.0);
    EXPECT_EQ(report.Worst("a: user, natural, near phrases of the user accepted"), 100.0);
}

} // namespace UserTrialTests

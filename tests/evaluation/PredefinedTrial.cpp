#include "evaluation/Trial.h"

#include "tests/engine/support/TinyLanguage.h"

#include <gmock/gmock.h>

namespace PredefinedTrialTests
{

using namespace velox;
using namespace velox::evaluation;
using testing::HasSubstr;

Clip Saying(const std::vector<std::size_t>& tones, const std::string& set)
{
    return {{"dev", "a", set, "natural", "m1", "m", set + ".wav"}, TinyLanguage::Say(tones, 4'000, 4'000)};
}

/// Two takes of which one is silent, a near phrase that is one and one that is none, a minute of background with the phrase in
/// it.
Judged Material()
{
    Judged judged;
    judged.phrase = "a";
    judged.takes = {Saying({0, 1, 2, 3}, "take"),
                    {{"dev", "a", "take", "natural-accent", "f1", "f", "silent.wav"}, std::vector<float>(16'000)}};
    judged.near = {Saying({0, 1, 2, 3}, "near-same"), Saying({3, 2, 1, 0}, "near-swapped")};
    judged.background = {Saying({0, 1, 2, 3}, "background")};
    judged.background[0].entry.kind = "human";
    judged.background[0].samples.resize(60 * 16'000, 0.0F);
    judged.talkers = {TinyLanguage::Whisper()};
    return judged;
}

TEST(PredefinedTrial, MissesAlarmsAndNearPhrasesAreCountedAndNoted)
{
    Language language;
    language.firmware = TinyLanguage::Phrase();
    language.blobs.preDefinedThreshold = 70.0;
    const Judged judged = Material();
    engine::WorkerPool pool(1);
    Report report;
    std::vector<Curve> curves;
    TryPredefined(language, judged, &pool, &report, &curves);
    EXPECT_NEAR(report.Worst("a: predefined, alarms per hour, people").value(), 60.0, 1e-9);
    EXPECT_EQ(report.Worst("a: predefined, missed, clean, natural"), 0.0);
    EXPECT_EQ(report.Worst("a: predefined, missed, clean, natural-accent"), 100.0);
    EXPECT_EQ(report.Worst("a: predefined, near phrases accepted, natural"), 50.0);
    EXPECT_EQ(report.Worst("a: predefined, near phrases accepted, near-same"), 100.0);
    EXPECT_EQ(report.Worst("a: predefined, near phrases accepted, near-swapped"), 0.0);
    EXPECT_THAT(report.Notes(), HasSubstr("missed, clean: silent.wav"));
    ASSERT_EQ(curves.size(), 8U) << "one for each condition with a goal";
    EXPECT_EQ(curves[0].name, "clean");
}

TEST(PredefinedTrial, TheJudgedThresholdIsThatOfHalfAnAlarmPerHourInRecordingsOfPeople)
{
    Language language;
    language.firmware = TinyLanguage::Phrase();
    language.blobs.preDefinedThreshold = 70.0;
    Judged judged = Material();
    engine::WorkerPool pool(1);
    std::vector<Curve> curves;
    Report report;
    TryPredefined(language, judged, &pool, &report, &curves);
    EXPECT_GT(report.Worst("a: predefined, score that gives 0.5 alarms/h"), 70.0) << "one alarm in a minute is too many";

    judged.background[0].entry.kind = "formant";
    Report synthesised;
    TryPredefined(language, judged, &pool, &synthesised, &curves);
    EXPECT_EQ(synthesised.Worst("a: predefined, score that gives 0.5 alarms/h"), 0.0);
    EXPECT_EQ(synthesised.Worst("a: predefined, missed, clean at 0.5 alarms/h, natural"), 0.0);
}

TEST(PredefinedTrial, WithoutNaturalVoicesEverythingCountsAsMissed)
{
    Language language;
    language.firmware = TinyLanguage::Phrase();
    Judged judged = Material();
    judged.takes.erase(judged.takes.begin());
    engine::WorkerPool pool(1);
    std::vector<Curve> curves;
    Report report;
    TryPredefined(language, judged, &pool, &report, &curves);
    EXPECT_EQ(report.Worst("a: predefined, missed, room, natural"), 100.0);
}

} // namespace PredefinedTrialTests

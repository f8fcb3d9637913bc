#include "console/languages/MissEstimate.h"

#include "engine/base/CountInterval.h"
#include "tests/engine/support/TinyLanguage.h"

#include <gtest/gtest.h>

namespace
{

using namespace velox::console;

/// Seven voices; the first and the sixth are held out.
velox::engine::LanguageMaterial SevenVoices()
{
    velox::engine::LanguageMaterial material = TinyLanguage::Material();
    for (uint64_t voice = 4; voice < 7; ++voice)
    {
        for (uint64_t take = 0; take < 2; ++take)
        {
            material.takes.push_back(
                {TinyLanguage::SayPhrase({}, 10 * voice + take), "take", "voice " + std::to_string(voice), 1.0F});
        }
    }
    const auto once = material.background;
    material.background.insert(material.background.end(), once.begin(), once.end());
    return material;
}

TEST(MissEstimate, TakesOfEveryFifthVoiceAreScoredByALanguageOfTheOthers)
{
    velox::engine::LanguageOptions options = TinyLanguage::QuickTraining();
    options.batches *= 4;
    const auto takes = ScoreHeldOut(SevenVoices(), options);
    ASSERT_TRUE(takes.has_value());
    EXPECT_EQ(takes->voices, 2U);
    ASSERT_EQ(takes->scores.size(), 4U);
    // It has learned the tones.
    EXPECT_EQ(takes->MissedAt(10.0), 0);
}

TEST(MissEstimate, TakesWithoutThePhraseAreMissed)
{
    velox::engine::LanguageMaterial material = SevenVoices();
    const std::vector<std::size_t> otherTones{7, 6, 5, 4};
    for (velox::engine::PhraseTake& take : material.takes)
    {
        if (take.voice == "voice 0")
        {
            take.samples = TinyLanguage::Say(otherTones, 8'000, 8'000);
        }
    }
    velox::engine::LanguageOptions options = TinyLanguage::QuickTraining();
    options.batches *= 4;
    const auto takes = ScoreHeldOut(material, options);
    ASSERT_TRUE(takes.has_value());
    EXPECT_EQ(takes->MissedAt(0.5), 2);
}

TEST(MissEstimate, MaterialThatDoesNotSufficeGivesNone)
{
    velox::engine::LanguageMaterial material = SevenVoices();
    material.background.resize(7);
    EXPECT_FALSE(ScoreHeldOut(material, TinyLanguage::QuickTraining()).has_value());
}

TEST(MissEstimate, CancelledItGivesNone)
{
    velox::engine::LanguageOptions options = TinyLanguage::QuickTraining();
    options.progress = [](double) {
        return false;
    };
    EXPECT_FALSE(ScoreHeldOut(SevenVoices(), options).has_value());
}

TEST(MissEstimate, FewerFalseAlarmsAreMoreMisses)
{
    // Where the thresholds lie: 100 is half an alarm per hour, ten more are e times fewer.
    const HeldOutTakes takes{2, {60.0, 99.0, 101.0, 150.0}};
    EXPECT_EQ(takes.MissedAt(0.5), 2);
    EXPECT_EQ(takes.MissedAt(0.6), 1);
    EXPECT_EQ(takes.MissedAt(0.4), 3);
    Report report;
    AddMisses(takes, 0.5, &report);
    const Chart chart = report.chart.value();
    EXPECT_EQ(chart.marked, 0.5);
    ASSERT_EQ(chart.points.size(), 10U);
    EXPECT_EQ(chart.points.front().x, 0.01);
    EXPECT_EQ(chart.points.back().x, 10.0);
    EXPECT_EQ(chart.points.front().y, 75.0);
    EXPECT_EQ(chart.points.back().y, 25.0);
    for (const Chart::Point& point : chart.points)
    {
        const velox::engine::CountInterval share = velox::engine::ShareFromCount(takes.MissedAt(point.x), 4);
        EXPECT_DOUBLE_EQ(point.least, 100.0 * share.least);
        EXPECT_DOUBLE_EQ(point.most, 100.0 * share.most);
    }
    AddMisses(takes, 50.0, &report);
    EXPECT_FALSE(report.chart->marked.has_value());
}

} // namespace

#include "console/takes/TakeComparison.h"

#include "tests/engine/support/TinyLanguage.h"

#include <gtest/gtest.h>

using namespace velox::console;

namespace
{

constexpr double UserThreshold = 60.0;
constexpr TakeFigures Usual{-20.0, 0.8, 120.0, 110.0};

std::vector<std::string> Codes(const std::vector<TakeFigures>& takes)
{
    std::vector<std::string> codes;
    for (const auto& outlier : FindOutliers(takes, UserThreshold))
    {
        codes.push_back(outlier ? outlier->code : "");
    }
    return codes;
}

using Strings = std::vector<std::string>;

} // namespace

TEST(TakeComparison, TakesAlikeHaveNoOutlier)
{
    EXPECT_EQ(Codes({Usual, {-24.0, 0.9, 110.0, 95.0}, {-17.0, 0.7, 130.0, 115.0}}), (Strings{"", "", ""}));
}

TEST(TakeComparison, EachDifferenceIsNamed)
{
    EXPECT_EQ(Codes({Usual, Usual, {-20.0, 0.8, 120.0, 40.0}}), (Strings{"", "", "UnlikeInVoice"}));
    EXPECT_EQ(Codes({Usual, {-20.0, 1.3, 120.0, 110.0}, Usual}), (Strings{"", "UnlikeInLength", ""}));
    EXPECT_EQ(Codes({{-33.0, 0.8, 120.0, 110.0}, Usual, Usual}), (Strings{"UnlikeInLevel", "", ""}));
    EXPECT_EQ(Codes({Usual, Usual, {-20.0, 0.8, 85.0, 110.0}}), (Strings{"", "", "UnlikeInScore"}));
}

TEST(TakeComparison, OfTwoTakesBothAreNamed)
{
    EXPECT_EQ(Codes({{-20.0, 0.8, 120.0, 30.0}, {-20.0, 0.8, 120.0, 40.0}}), (Strings{"UnlikeInVoice", "UnlikeInVoice"}));
}

TEST(TakeComparison, OneTakeDiffersFromNothing)
{
    EXPECT_EQ(Codes({{-20.0, 0.8, 120.0, std::nullopt}}), Strings{""});
}

TEST(TakeComparison, WithoutModelsTheVoiceIsNotCompared)
{
    const TakeFigures unknown{-20.0, 0.8, 120.0, std::nullopt};
    EXPECT_EQ(Codes({unknown, unknown, unknown}), (Strings{"", "", ""}));
}

TEST(TakeComparison, ATakeScoresWithTheModelOfTheOthers)
{
    Audio first;
    first.samples = TinyLanguage::SayPhrase({0.15, 0.4, 3300.0}, 1);
    Audio second;
    second.samples = TinyLanguage::SayPhrase({0.15, 0.4, 3300.0}, 2);
    Audio silent;
    silent.samples.assign(16000, 0.0F);
    const std::vector<const Audio*> takes{&first, &second, &silent};
    velox::console::Progress progress(nullptr);
    const auto scores = ScoreAgainstOthers(takes, TinyLanguage::Acoustic(), TinyLanguage::Background(), &progress);
    ASSERT_EQ(scores.size(), 3U);
    EXPECT_GT(scores[0].value(), UserThreshold);
    EXPECT_GT(scores[1].value(), UserThreshold);
    EXPECT_EQ(scores[2].value(), 0.0);
    EXPECT_EQ(ScoreAgainstOthers({&takes[0], 1}, TinyLanguage::Acoustic(), TinyLanguage::Background(), &progress)[0],
              std::nullopt);
}

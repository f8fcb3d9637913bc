#include "engine/listening/Decoder.h"

#include <gmock/gmock.h>

#include <cmath>
#include <optional>

namespace DecoderTests
{

using testing::ElementsAre;
using velox::engine::PhrasePath;
using velox::engine::SoftMinimumScore;
using velox::engine::StateModel;

constexpr float Hit = 2.0F;
constexpr float Miss = -4.0F;

/// Equal chances of stay and leave.
constexpr float EvenDuration = 4.0F;

/// Pushes log ratios themselves: all priors are 1, and so is the background's posterior.
class Decoder : public testing::Test
{
protected:
    void UseStates(std::vector<float> durations)
    {
        decoder.emplace(StateModel{std::vector<float>(durations.size() + 1, 0.0F), durations});
    }

    bool Push(std::vector<float> ratios, int times = 1)
    {
        ratios.push_back(0.0F);
        bool reached = false;
        for (int i = 0; i < times; ++i)
        {
            reached = decoder->Push(ratios.data());
        }
        return reached;
    }

    /// Frames in which each state in turn fits for so long.
    bool PushPhrase(const std::vector<int>& durations, float hit = Hit)
    {
        bool reached = false;
        for (std::size_t s = 0; s < durations.size(); ++s)
        {
            std::vector<float> ratios(durations.size(), Miss);
            ratios[s] = hit;
            reached = Push(ratios, durations[s]);
        }
        return reached;
    }

    const PhrasePath& Best() const
    {
        return decoder->BestPath();
    }

    std::optional<velox::engine::Decoder> decoder;
};

TEST_F(Decoder, APhraseLastsAtLeastThreeFramesForEachState)
{
    UseStates({EvenDuration, EvenDuration});
    EXPECT_FALSE(Push({Hit, Hit}, 5));
    EXPECT_TRUE(Push({Hit, Hit}));
    EXPECT_EQ(decoder->FrameCount(), 6);
    EXPECT_THAT(Best().counts, ElementsAre(3, 3));
}

TEST_F(Decoder, APathCountsTheFramesOfEachStateAndSaysHowWellTheyFit)
{
    UseStates({EvenDuration, EvenDuration});
    Push({1.0F, Miss});
    Push({2.0F, Miss});
    Push({0.5F, Miss});
    Push({Miss, -1.0F});
    Push({Miss, 2.5F});
    ASSERT_TRUE(Push({Miss, 3.0F}));
    EXPECT_EQ(Best().startFrame, 0);
    EXPECT_THAT(Best().counts, ElementsAre(3, 3));
    EXPECT_THAT(Best().fits, ElementsAre(3.5F / 3.0F, 1.5F));
}

TEST_F(Decoder, APhraseMayBeginAtEveryFrame)
{
    UseStates({EvenDuration, EvenDuration});
    for (const int64_t start : {7, 29, 50})
    {
        SCOPED_TRACE(start);
        Push({Miss, Miss}, static_cast<int>(start - decoder->FrameCount()));
        ASSERT_TRUE(PushPhrase({3, 3}));
        EXPECT_EQ(Best().startFrame, start);
        EXPECT_THAT(Best().counts, ElementsAre(3, 3));
        EXPECT_THAT(Best().fits, ElementsAre(Hit, Hit));
    }
}

TEST_F(Decoder, AStateIsStayedInWhereThatGainsMoreThanItCosts)
{
    // To stay costs ln 2 = 0.69 each time.
    const struct
    {
        float ratio;
        std::vector<int> counts;
    } cases[] = {{0.75F, {5, 3}}, {0.625F, {3, 3}}};
    for (const auto& given : cases)
    {
        SCOPED_TRACE(given.ratio);
        UseStates({EvenDuration, EvenDuration});
        ASSERT_TRUE(PushPhrase({5, 3}, given.ratio));
        EXPECT_EQ(Best().counts, given.counts);
        EXPECT_EQ(Best().startFrame, 5 - given.counts[0]);
        EXPECT_EQ(Best().fits[0], given.ratio);
    }
}

TEST_F(Decoder, LongStatesAreStayedInMoreReadily)
{
    // A mean of 12 frames: to stay costs -ln(1 - 1/10) = 0.105.
    UseStates({12.0F, EvenDuration});
    ASSERT_TRUE(PushPhrase({9, 3}, 0.125F));
    EXPECT_THAT(Best().counts, ElementsAre(9, 3));
}

TEST_F(Decoder, MeanDurationsBelowTheLeastOneCountAsThreePointThree)
{
    // To stay costs -ln(1 - 1/1.3) = 1.466.
    for (const float duration : {0.0F, 1.0F, 3.3F})
    {
        SCOPED_TRACE(duration);
        UseStates({duration, EvenDuration});
        ASSERT_TRUE(PushPhrase({5, 3}, 1.375F));
        EXPECT_THAT(Best().counts, ElementsAre(3, 3));
        UseStates({duration, EvenDuration});
        ASSERT_TRUE(PushPhrase({5, 3}, 1.5F));
        EXPECT_THAT(Best().counts, ElementsAre(5, 3));
    }
}

TEST_F(Decoder, APauseWithinAStateCostsNoFit)
{
    UseStates({EvenDuration, 20.0F, EvenDuration});
    Push({Hit, Miss, Miss}, 3);
    Push({Miss, 1.0F, Miss});
    Push({Miss, Hit, Miss}, 3);
    Push({Miss, -0.25F, Miss}, 10);
    Push({Miss, 1.5F, Miss}, 3);
    ASSERT_TRUE(Push({Miss, Miss, Hit}, 3));
    EXPECT_THAT(Best().counts, ElementsAre(3, 17, 3));
    EXPECT_THAT(Best().fits, ElementsAre(Hit, Hit, Hit)) << "the best three frames in a row";
}

TEST_F(Decoder, NoNoiseDrawsAPhraseOutBeyondTwiceItsMean)
{
    const std::vector<float> durations{20.0F, 30.0F, 10.0F};
    UseStates(durations);
    ASSERT_TRUE(PushPhrase({40, 60, 17}));
    EXPECT_THAT(Best().counts, ElementsAre(40, 60, 17));

    UseStates(durations);
    ASSERT_TRUE(PushPhrase({40, 100, 20}));
    EXPECT_GT(Best().startFrame, 160 - 120 - 5);
}

TEST_F(Decoder, ThePathHoldsWhatMakesTheLargestTotal)
{
    UseStates({EvenDuration, EvenDuration});
    Push({1.0F, Miss}, 3);
    Push({2.0F, 0.0F});
    ASSERT_FALSE(Push({0.0F, 2.0F}));
    ASSERT_TRUE(Push({0.0F, 2.0F}));
    EXPECT_THAT(Best().counts, ElementsAre(3, 3));
    ASSERT_TRUE(Push({0.0F, 2.0F}));
    // Start at 0: four frames, 5, and three, 6, less the stay, 0.69. Start at 1: 4 and 6. Start at 0 and leave at once: 3 and 6.
    EXPECT_EQ(Best().startFrame, 0);
    EXPECT_THAT(Best().counts, ElementsAre(4, 3));
    EXPECT_THAT(Best().fits, ElementsAre(4.0F / 3.0F, 2.0F));
}

TEST_F(Decoder, ARatioIsThatOfPosteriorsOverPriorsAgainstTheBackgrounds)
{
    decoder.emplace(StateModel{{std::log(0.125F), std::log(0.5F)}, {EvenDuration}});
    const float logPosteriors[] = {std::log(0.25F), std::log(0.75F)};
    for (int i = 0; i < 3; ++i)
    {
        decoder->Push(logPosteriors);
    }
    // (0.25 / 0.125) / (0.75 / 0.5) = 4/3
    EXPECT_NEAR(Best().fits[0], std::log(4.0F / 3.0F), 1e-6F);
}

TEST_F(Decoder, RatiosAreClipped)
{
    UseStates({EvenDuration});
    Push({100.0F}, 3);
    EXPECT_EQ(Best().fits[0], 3.0F);
    UseStates({EvenDuration});
    Push({-100.0F}, 3);
    EXPECT_EQ(Best().fits[0], -4.0F);
}

TEST_F(Decoder, EarlierHistoryDoesNotMatterAfterALongBackground)
{
    const std::vector<float> durations{EvenDuration, 6.0F, 9.0F};
    const auto pushTail = [this] {
        Push({Miss, Miss, Miss}, 200);
        ASSERT_TRUE(PushPhrase({5, 4, 7}));
    };
    UseStates(durations);
    pushTail();
    const PhrasePath fresh = Best();

    UseStates(durations);
    PushPhrase({4, 6, 3}, 3.0F);
    Push({3.0F, 3.0F, Miss}, 40);
    const int64_t offset = decoder->FrameCount();
    pushTail();
    EXPECT_EQ(Best().startFrame, fresh.startFrame + offset);
    EXPECT_EQ(Best().counts, fresh.counts);
    EXPECT_EQ(Best().fits, fresh.fits);
}

TEST_F(Decoder, ScoreIsTheSoftMinimumOfTheStatesFits)
{
    const struct
    {
        const char* description;
        PhrasePath path;
        float score;
    } cases[] = {{"one state", {0, {1.5F}, {3}, {}}, 1.5F},
                 {"equal fits, unequal durations", {0, {2.0F, 2.0F}, {3, 4}, {}}, 2.0F},
                 {"-ln((1/4 + 1/16) / 2)", {0, {std::log(4.0F), std::log(16.0F)}, {3, 5}, {}}, 1.8562980F},
                 {"the upper bound", {0, {3.0F, 3.0F}, {3, 3}, {}}, 3.0F},
                 {"the lower bound", {0, {-4.0F, -4.0F}, {3, 3}, {}}, -4.0F}};
    for (const auto& given : cases)
    {
        SCOPED_TRACE(given.description);
        EXPECT_NEAR(SoftMinimumScore(given.path), given.score, 1e-5F);
    }
}

TEST_F(Decoder, HalfAPhraseScoresMuchLowerThanAWholeOne)
{
    const std::vector<float> durations(4, EvenDuration);
    UseStates(durations);
    ASSERT_TRUE(PushPhrase({4, 4, 4, 4}));
    EXPECT_NEAR(SoftMinimumScore(Best()), Hit, 1e-5F);

    UseStates(durations);
    Push({Hit, Miss, Miss, Miss}, 4);
    Push({Miss, Hit, Miss, Miss}, 4);
    ASSERT_TRUE(Push({Miss, Miss, Miss, Miss}, 6));
    // -ln((2 exp(-2) + 2 exp(4)) / 4)
    EXPECT_NEAR(SoftMinimumScore(Best()), -3.3093F, 1e-3F);
}

} // namespace DecoderTests

#include "engine/enrollment/TakeAgreement.h"

#include "engine/sound/Cepstrum.h"

#include <gmock/gmock.h>

namespace TakeAgreementTests
{

using namespace velox::engine;

/// A take of two states, two frames each, all of whose coefficients have one value.
PhraseFrames Take(float value)
{
    return {Eigen::MatrixXf::Constant(CepstralFrameSize, 4, value), {2, 2}, 1.0F};
}

GaussianMixture Around(float mean)
{
    return {Eigen::VectorXf::Ones(1), Eigen::MatrixXf::Constant(CepstralFrameSize, 1, mean),
            Eigen::MatrixXf::Ones(CepstralFrameSize, 1)};
}

/// Everybody lies around 0.
class TakeAgreement : public testing::Test
{
protected:
    bool Agree(const std::vector<float>& values) const
    {
        std::vector<PhraseFrames> takes;
        for (const float value : values)
        {
            takes.push_back(Take(value));
        }
        return !UnlikeInVoice(everybody, takes);
    }

    GenericSpeakers everybody{{Around(0.0F), Around(0.0F)}};
};

TEST_F(TakeAgreement, TakesOfOneVoiceAgree)
{
    EXPECT_TRUE(Agree({2.0F, 2.0F, 2.0F}));
    EXPECT_TRUE(Agree({1.5F, 2.0F, 2.5F, 3.0F}));
    EXPECT_TRUE(Agree({-1.0F, -2.0F}));
}

TEST_F(TakeAgreement, OneTakeUnlikeTheOthersIsFoundWhereverItStands)
{
    EXPECT_FALSE(Agree({-2.0F, 2.0F, 2.0F}));
    EXPECT_FALSE(Agree({2.0F, -2.0F, 2.0F}));
    EXPECT_FALSE(Agree({2.0F, 2.0F, -2.0F}));
    EXPECT_FALSE(Agree({2.0F, -2.0F}));
}

TEST_F(TakeAgreement, ATakeThatIsOnlyLikeEverybodyIsUnlikeTheOthers)
{
    EXPECT_FALSE(Agree({3.0F, 3.0F, 0.0F}));
}

TEST_F(TakeAgreement, OneTakeAgreesWithItself)
{
    EXPECT_TRUE(Agree({}));
    EXPECT_TRUE(Agree({2.0F}));
}

TEST_F(TakeAgreement, ATakesRatioTellsHowMuchItIsLikeTheOthers)
{
    const std::vector<PhraseFrames> takes{Take(2.0F), Take(2.0F), Take(-2.0F)};
    const std::vector<float> ratios = RatiosToOthers(everybody, takes);
    ASSERT_EQ(ratios.size(), 3U);
    EXPECT_LT(ratios[2], 0.0F);
    EXPECT_GT(ratios[0], ratios[2]);
    EXPECT_TRUE(RatiosToOthers(everybody, std::span(takes).first(1)).empty());
}

TEST_F(TakeAgreement, PairsOfOneVoiceHaveTheHigherRatioBothWaysAlike)
{
    const Eigen::MatrixXf ratios = PairRatios(everybody, std::vector<PhraseFrames>{Take(2.0F), Take(-2.0F), Take(2.5F)});
    EXPECT_GT(ratios(0, 2), 0.0F);
    EXPECT_LT(ratios(0, 1), 0.0F);
    EXPECT_LT(ratios(1, 2), 0.0F);
    EXPECT_EQ(ratios, ratios.transpose());
    EXPECT_EQ(ratios(1, 1), 0.0F);
}

TEST_F(TakeAgreement, TheTakeOfAnotherVoiceIsNamed)
{
    EXPECT_THAT(UnlikeInVoice(everybody, std::vector<PhraseFrames>{Take(2.0F), Take(-2.0F), Take(2.5F)}), testing::Optional(1U));
    EXPECT_THAT(UnlikeInVoice(everybody, std::vector<PhraseFrames>{Take(-2.0F), Take(2.0F), Take(2.5F)}), testing::Optional(0U));
}

TEST_F(TakeAgreement, TakesThatEverybodyWasLearnedFromAreAlike)
{
    // They vary around everybody's mean, so that each is nearer to it than to a user who is learned from the others.
    const std::vector<PhraseFrames> takes{Take(0.15F), Take(-0.15F), Take(0.05F)};
    EXPECT_THAT(RatiosToOthers(everybody, takes), testing::Contains(testing::Lt(0.0F)));
    EXPECT_EQ(UnlikeInVoice(everybody, takes), std::nullopt);
}

TEST_F(TakeAgreement, TheTakeWithAnotherLevelIsNamed)
{
    EXPECT_EQ(UnlikeInLevel({}), std::nullopt);
    EXPECT_EQ(UnlikeInLevel(std::vector{-30.0}), std::nullopt);
    EXPECT_EQ(UnlikeInLevel(std::vector{-30.0, -15.0, -40.0}), std::nullopt);
    EXPECT_THAT(UnlikeInLevel(std::vector{-20.0, -15.0, -40.1}), testing::Optional(2U));
    EXPECT_THAT(UnlikeInLevel(std::vector{-10.0, -36.0, -40.1}), testing::Optional(0U));
}

} // namespace TakeAgreementTests

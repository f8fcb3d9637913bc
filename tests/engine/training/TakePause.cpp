#include "engine/training/TakePause.h"

#include <gmock/gmock.h>

namespace TakePauseTests
{

using namespace velox::engine;
using testing::ElementsAre;

/// Forty frames, of them the middle twenty the phrase, as loud as this.
PreparedTake Take(const std::vector<float>& loudness)
{
    PreparedTake take;
    take.begin = 10;
    take.end = 30;
    take.logMel.resize(40);
    for (std::size_t i = 0; i < loudness.size(); ++i)
    {
        take.logMel[take.begin + i].fill(loudness[i]);
    }
    return take;
}

TEST(TakePause, AFifthOfTheCopiesPauseWhereTheTakeIsQuietest)
{
    std::vector<float> loudness(20, 5.0F);
    loudness[2] = 0.0F; // in the outer quarter
    loudness[12] = 1.0F;
    const PreparedTake take = Take(loudness);
    RandomStream random(1);
    int pauses = 0;
    for (int i = 0; i < 1000; ++i)
    {
        if (const std::optional<Pause> pause = DrawPause(take, &random))
        {
            ++pauses;
            EXPECT_EQ(pause->start, 23U);
            EXPECT_GE(pause->frames, 5U);
            EXPECT_LE(pause->frames, 35U);
        }
    }
    EXPECT_GT(pauses, 150);
    EXPECT_LT(pauses, 250);
}

TEST(TakePause, ATakeWithoutInnerFramesHasNone)
{
    PreparedTake take = Take({});
    take.end = take.begin;
    RandomStream random(1);
    for (int i = 0; i < 50; ++i)
    {
        EXPECT_FALSE(DrawPause(take, &random).has_value());
    }
}

TEST(TakePause, ThePauseBelongsToTheStateBefore)
{
    EXPECT_THAT(LabelsWithPause({7, 0, 0, 1, 7}, {3, 2}), ElementsAre(7, 0, 0, 0, 0, 1, 7));
}

} // namespace TakePauseTests

#include "engine/training/TakeAlignment.h"

#include "tests/engine/support/TinyLanguage.h"

#include <gmock/gmock.h>

#include <cmath>
#include <stdexcept>

namespace TakeAlignmentTests
{

using namespace velox::engine;
using testing::ElementsAre;
using testing::FloatNear;

std::vector<PreparedTake> Takes()
{
    std::vector<std::string> warnings;
    return PrepareTakes(TinyLanguage::Material().takes, &warnings);
}

TEST(TakeAlignment, EveryTakePassesThroughAllStates)
{
    const std::vector<PreparedTake> takes = Takes();
    const PhraseAlignment alignment = AlignPreparedTakes(takes, 1);
    ASSERT_EQ(alignment.labels.size(), takes.size());
    for (std::size_t i = 0; i < takes.size(); ++i)
    {
        ASSERT_EQ(alignment.labels[i].size(), takes[i].end - takes[i].begin);
        EXPECT_EQ(alignment.labels[i].front(), 0);
        EXPECT_EQ(alignment.labels[i].back(), static_cast<int>(alignment.states) - 1);
    }
}

TEST(TakeAlignment, TakesThatAreAllTooShortAreRefused)
{
    std::vector<PreparedTake> takes = Takes();
    takes.resize(1);
    takes[0].end = takes[0].begin + LeastStateFrames - 1;
    EXPECT_THROW(AlignPreparedTakes(takes, 1), std::invalid_argument);
}

TEST(TakeAlignment, TheDecoderKnowsHalfOfEachStatesShare)
{
    PhraseAlignment alignment;
    alignment.states = 3;
    alignment.shares = {0.75F, 0.25F, 0.0F};
    alignment.meanDurations = {6.0F, 2.0F, 3.0F};
    const StateModel states = StatesOf(alignment);
    // A state without a share has a thousandth; the background has the other half.
    EXPECT_THAT(states.logPrior, ElementsAre(FloatNear(std::log(0.375F), 1e-6F), FloatNear(std::log(0.125F), 1e-6F),
                                             FloatNear(std::log(0.0005F), 1e-6F), FloatNear(std::log(0.5F), 1e-6F)));
    EXPECT_THAT(states.meanDuration, ElementsAre(6.0F, 2.0F, 3.0F));
}

} // namespace TakeAlignmentTests

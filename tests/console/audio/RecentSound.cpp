#include "console/audio/RecentSound.h"

#include <gmock/gmock.h>

#include <numeric>

namespace RecentSoundTests
{

using testing::ElementsAre;
using testing::SizeIs;
using velox::console::RecentSound;

/// Of which each sample is its own number.
RecentSound Counted(std::size_t kept, int samples)
{
    RecentSound recent(kept);
    std::vector<float> numbers(static_cast<std::size_t>(samples));
    std::iota(numbers.begin(), numbers.end(), 0.0F);
    for (const float& number : numbers)
    {
        recent.Add({&number, 1});
    }
    return recent;
}

TEST(RecentSound, GivesAStretchByItsPlaceFromTheBeginning)
{
    const RecentSound recent = Counted(10, 1000);
    EXPECT_EQ(recent.Heard(), 1000);
    int64_t from = 0;
    EXPECT_THAT(recent.Between(990, 993, &from), ElementsAre(990.0F, 991.0F, 992.0F));
    EXPECT_EQ(from, 990);
}

TEST(RecentSound, WhatLiesOutsideIsLeftOut)
{
    int64_t from = -1;
    const RecentSound young = Counted(10, 3);
    EXPECT_THAT(young.Between(-5, 2, &from), ElementsAre(0.0F, 1.0F));
    EXPECT_EQ(from, 0);
    EXPECT_THAT(young.Between(2, 50, &from), ElementsAre(2.0F));
    EXPECT_THAT(young.Between(7, 9, &from), SizeIs(0));

    const RecentSound old = Counted(10, 1000);
    const auto rest = old.Between(0, 1000, &from);
    EXPECT_GE(rest.size(), 10U) << "as much as is kept";
    EXPECT_LE(rest.size(), 22U) << "and not much more";
    EXPECT_EQ(rest.front(), static_cast<float>(from));
}

} // namespace RecentSoundTests

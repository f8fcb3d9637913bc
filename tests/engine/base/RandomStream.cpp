#include "engine/base/RandomStream.h"

#include <gmock/gmock.h>

#include <array>
#include <set>

namespace RandomStreamTests
{

using velox::engine::RandomStream;

constexpr int Draws = 20000;

TEST(RandomStream, GivesThePublishedSequenceOfItsGenerator)
{
    // SplitMix64 started with 0 gives 0xE220A8397B1DCDAF first; a stream starts with its mixed seed, which is 0 for 0.
    RandomStream random(0);
    EXPECT_EQ(random.Bits(), 0xE220A8397B1DCDAFU);
    EXPECT_EQ(random.Bits(), 0x6E789E6AA1B965F4U);
    EXPECT_EQ(random.Bits(), 0x06C45D188009454FU);
}

TEST(RandomStream, NeighbouringSeedsGiveStreamsWithoutACommonNumber)
{
    std::set<uint64_t> seen;
    for (uint64_t seed = 0; seed < 8; ++seed)
    {
        RandomStream random(seed);
        for (int i = 0; i < 1000; ++i)
        {
            seen.insert(random.Bits());
        }
    }
    EXPECT_EQ(seen.size(), 8000U);
}

TEST(RandomStream, UniformNumbersFillTheRangeFromZeroToOne)
{
    RandomStream random(1);
    std::array<int, 10> counts{};
    for (int i = 0; i < Draws; ++i)
    {
        const double value = random.Uniform();
        ASSERT_GE(value, 0.0);
        ASSERT_LT(value, 1.0);
        ++counts[static_cast<std::size_t>(value * 10.0)];
    }
    EXPECT_THAT(counts, testing::Each(testing::AllOf(testing::Gt(1800), testing::Lt(2200))));
}

TEST(RandomStream, IntegersReachBothBoundsAndNoFurther)
{
    RandomStream random(2);
    std::set<int64_t> seen;
    for (int i = 0; i < 1000; ++i)
    {
        seen.insert(random.Integer(-2, 3));
    }
    EXPECT_THAT(seen, testing::ElementsAre(-2, -1, 0, 1, 2, 3));
}

TEST(RandomStream, AnIntegerBetweenEqualBoundsIsTheBound)
{
    RandomStream random(3);
    EXPECT_EQ(random.Integer(7, 7), 7);
}

TEST(RandomStream, NormalNumbersHaveTheMomentsOfTheNormalDistribution)
{
    RandomStream random(4);
    double sum = 0.0;
    double squares = 0.0;
    int beyondTwo = 0;
    for (int i = 0; i < Draws; ++i)
    {
        const double value = random.Normal();
        sum += value;
        squares += value * value;
        beyondTwo += std::abs(value) > 2.0 ? 1 : 0;
    }
    EXPECT_NEAR(sum / Draws, 0.0, 0.03);
    EXPECT_NEAR(squares / Draws, 1.0, 0.04);
    EXPECT_NEAR(static_cast<double>(beyondTwo) / Draws, 0.0455, 0.006);
}

} // namespace RandomStreamTests

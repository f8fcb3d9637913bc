#include "engine/training/TakeDamage.h"

#include "engine/base/AudioFormat.h"
#include "tests/engine/support/Signals.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace TakeDamageTests
{

using namespace velox::engine;
using testing::Each;
using testing::Eq;
using testing::FloatNear;
using testing::SizeIs;

constexpr float Phrase = 0.5F;
constexpr std::size_t Begin = 30;
constexpr std::size_t Frames = 100;

/// A hundred frames of phrase with silence around them.
PreparedTake Take()
{
    PreparedTake take;
    take.begin = Begin;
    take.end = Begin + Frames;
    take.samples.assign((2 * Begin + Frames) * FrameSize, 0.0F);
    std::fill_n(take.samples.begin() + Begin * FrameSize, Frames * FrameSize, Phrase);
    take.logMel.resize(2 * Begin + Frames);
    return take;
}

std::span<const float> DamagedPart(const DamagedTake& damaged)
{
    return std::span(damaged.samples).subspan(damaged.begin * FrameSize, (damaged.end - damaged.begin) * FrameSize);
}

TEST(TakeDamage, AnEighthToThreeFifthsOfThePhraseAreReplaced)
{
    const PreparedTake take = Take();
    RandomStream random(1);
    bool atStart = false;
    bool atEnd = false;
    for (int i = 0; i < 200; ++i)
    {
        const DamagedTake damaged = DamageTake(take, {}, &random);
        ASSERT_THAT(damaged.samples, SizeIs(take.samples.size()));
        ASSERT_GE(damaged.begin, take.begin);
        ASSERT_LE(damaged.end, take.end);
        EXPECT_GE(damaged.end - damaged.begin, 12U);
        EXPECT_LE(damaged.end - damaged.begin, 60U);
        atStart = atStart || damaged.begin == take.begin;
        atEnd = atEnd || damaged.end == take.end;
    }
    EXPECT_TRUE(atStart);
    EXPECT_TRUE(atEnd);
}

TEST(TakeDamage, WithoutBackgroundThePartIsSilentAndTheRestIsKept)
{
    const PreparedTake take = Take();
    RandomStream random(1);
    for (int i = 0; i < 20; ++i)
    {
        const DamagedTake damaged = DamageTake(take, {}, &random);
        EXPECT_THAT(DamagedPart(damaged), Each(0.0F));
        EXPECT_EQ(std::ranges::count(damaged.samples, Phrase),
                  static_cast<std::ptrdiff_t>((Frames - (damaged.end - damaged.begin)) * FrameSize));
    }
}

TEST(TakeDamage, HalfOfThePartsAreOtherSpeechAsLoudAsThePhrase)
{
    const PreparedTake take = Take();
    const std::vector<std::vector<float>> background{std::vector<float>(20000, 0.01F)};
    RandomStream random(1);
    int replaced = 0;
    for (int i = 0; i < 100; ++i)
    {
        const DamagedTake damaged = DamageTake(take, background, &random);
        if (DamagedPart(damaged)[0] == 0.0F)
        {
            continue;
        }
        ++replaced;
        EXPECT_THAT(DamagedPart(damaged), Each(FloatNear(Phrase, 0.02F)));
    }
    EXPECT_GT(replaced, 25);
    EXPECT_LT(replaced, 75);
}

TEST(TakeDamage, BackgroundShorterThanThePartIsNotUsed)
{
    const std::vector<std::vector<float>> background{std::vector<float>(10, 0.01F)};
    RandomStream random(1);
    for (int i = 0; i < 20; ++i)
    {
        EXPECT_THAT(DamagedPart(DamageTake(Take(), background, &random)), Each(0.0F));
    }
}

TEST(TakeDamage, CopiesAreTheSameWheneverTheyAreMadeAndOthersForEveryTake)
{
    const PreparedTake take = Take();
    const std::vector<DamagedCopy> copies = DamagedCopies(take, 3, {}, 7);
    const std::vector<DamagedCopy> again = DamagedCopies(take, 3, {}, 7);
    const std::vector<DamagedCopy> other = DamagedCopies(take, 4, {}, 7);
    ASSERT_THAT(copies, SizeIs(6));
    EXPECT_FALSE(copies[0].plan.noise || copies[0].plan.room || copies[0].plan.band) << "the first one is clean";
    for (std::size_t i = 0; i < copies.size(); ++i)
    {
        EXPECT_EQ(copies[i].take.samples, again[i].take.samples);
        EXPECT_EQ(copies[i].plan.level, again[i].plan.level);
        EXPECT_TRUE(i == 0 || copies[i].plan.level != other[i].plan.level);
    }
}

} // namespace TakeDamageTests

#include "engine/training/TakeDamage.h"

#include "tests/engine/support/Signals.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace
{

using namespace velox::engine;

constexpr std::size_t Length = 10000;
constexpr float Phrase = 0.5F;

std::size_t Changed(std::span<const float> damaged)
{
    return static_cast<std::size_t>(std::count_if(damaged.begin(), damaged.end(), [](float sample) { return sample != Phrase; }));
}

TEST(TakeDamage, WithoutBackgroundAPartIsCutOut)
{
    const std::vector<float> phrase(Length, Phrase);
    RandomStream random(1);
    for (int i = 0; i < 100; ++i)
    {
        const std::vector<float> damaged = DamageTake(phrase, {}, &random);
        EXPECT_GE(Length - damaged.size(), Length * 8 / 100);
        EXPECT_LE(Length - damaged.size(), Length * 35 / 100);
        EXPECT_EQ(Changed(damaged), 0U);
    }
}

TEST(TakeDamage, APartIsReplacedAtTheSameLevelOrCutOut)
{
    const std::vector<float> phrase(Length, Phrase);
    const std::vector<std::vector<float>> background{std::vector<float>(20000, 0.01F)};
    RandomStream random(1);
    int replaced = 0;
    for (int i = 0; i < 100; ++i)
    {
        std::vector<float> damaged = DamageTake(phrase, background, &random);
        if (damaged.size() != Length)
        {
            continue;
        }
        ++replaced;
        for (const float sample : damaged)
        {
            EXPECT_NEAR(sample, Phrase, 1e-5F) << "as loud as the phrase";
        }
    }
    EXPECT_GT(replaced, 25);
    EXPECT_LT(replaced, 75);
}

TEST(TakeDamage, WhatIsReplacedIsOnePieceOfTheGivenLength)
{
    const std::vector<float> phrase(Length, Phrase);
    const std::vector<std::vector<float>> background{Signals::Noise(0.1, 20000, 2)};
    RandomStream random(4);
    for (int i = 0; i < 50; ++i)
    {
        const std::vector<float> damaged = DamageTake(phrase, background, &random);
        if (damaged.size() == Length)
        {
            EXPECT_GE(Changed(damaged), Length * 7 / 100);
            EXPECT_LE(Changed(damaged), Length * 35 / 100);
        }
    }
}

TEST(TakeDamage, BackgroundShorterThanThePartIsNotUsed)
{
    const std::vector<std::vector<float>> background{std::vector<float>(10, 0.01F)};
    RandomStream random(1);
    for (int i = 0; i < 20; ++i)
    {
        EXPECT_LT(DamageTake(std::vector<float>(Length, Phrase), background, &random).size(), Length);
    }
}

} // namespace

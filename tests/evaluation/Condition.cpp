#include "evaluation/Condition.h"

#include "tests/engine/support/Signals.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <map>

namespace ConditionTests
{

using namespace velox::evaluation;
using testing::Each;
using testing::ElementsAre;
using testing::Pair;

constexpr std::size_t Second = 16'000;
constexpr std::size_t Silence = Second / 2;

double Decibels(std::span<const float> samples)
{
    double sum = 0.0;
    for (const float sample : samples)
    {
        sum += static_cast<double>(sample) * static_cast<double>(sample);
    }
    return 10.0 * std::log10(sum / static_cast<double>(samples.size()) + 1e-12);
}

std::vector<float> Part(const std::vector<float>& samples, std::size_t first, std::size_t length)
{
    return {samples.begin() + static_cast<std::ptrdiff_t>(first), samples.begin() + static_cast<std::ptrdiff_t>(first + length)};
}

class Condition : public testing::Test
{
protected:
    static std::vector<std::string> Names(const std::vector<velox::evaluation::Condition>& conditions)
    {
        std::vector<std::string> names;
        for (const auto& condition : conditions)
        {
            names.push_back(condition.name);
        }
        return names;
    }

    std::vector<float> Apply(const std::string& name, uint64_t number = 1) const
    {
        for (const auto& condition : Conditions(talkers))
        {
            if (condition.name == name)
            {
                return condition.apply(clip, number);
            }
        }
        ADD_FAILURE() << "there is no " << name;
        return std::vector<float>(3 * Second);
    }

    std::vector<float> clip = Signals::Sine(1000.0, 0.1, Second);
    std::vector<std::vector<float>> talkers{Signals::Noise(0.3, 4 * Second, 7), Signals::Noise(0.1, Second, 8)};
};

TEST_F(Condition, AllHaveTheirNames)
{
    EXPECT_THAT(Names(Conditions(talkers)),
                ElementsAre("clean", "babble 20 dB", "babble 10 dB", "babble 10 dB that begins with the take",
                            "babble 10 dB that was there before", "babble 5 dB", "pink 20 dB", "pink 10 dB",
                            "pink 10 dB that begins with the take", "pink 10 dB that was there before", "pink 5 dB",
                            "white 20 dB", "white 10 dB", "white 10 dB that begins with the take",
                            "white 10 dB that was there before", "white 5 dB", "room", "level -20 dB", "level -10 dB",
                            "level 10 dB", "tempo 0.75", "tempo 0.8", "tempo 0.9", "tempo 1.1", "tempo 1.2", "tempo 1.3",
                            "tempo 1.35", "telephone", "low-pass 4 kHz", "after zeros", "after silence", "after speech"));
}

TEST_F(Condition, GoalsAreThoseOfTheTable)
{
    std::map<std::string, double> predefined;
    std::map<std::string, double> user;
    for (const auto& condition : Conditions(talkers))
    {
        if (condition.predefined.IsSet())
        {
            predefined[condition.name] = condition.predefined.most;
        }
        if (condition.user.IsSet())
        {
            user[condition.name] = condition.user.most;
        }
    }
    EXPECT_THAT(predefined,
                ElementsAre(Pair("babble 10 dB", 8.0), Pair("clean", 3.0), Pair("low-pass 4 kHz", 5.0), Pair("pink 10 dB", 8.0),
                            Pair("room", 8.0), Pair("telephone", 5.0), Pair("tempo 0.8", 8.0), Pair("tempo 1.3", 8.0)));
    EXPECT_THAT(user, ElementsAre(Pair("babble 10 dB", 3.0), Pair("clean", 1.0), Pair("level -10 dB", 1.0),
                                  Pair("level -20 dB", 1.0), Pair("level 10 dB", 1.0), Pair("pink 10 dB", 3.0), Pair("room", 3.0),
                                  Pair("tempo 0.8", 3.0), Pair("tempo 1.3", 3.0), Pair("white 10 dB", 3.0)));
}

TEST_F(Condition, CleanIsTheClipBetweenSilences)
{
    const std::vector<float> clean = Apply("clean");
    ASSERT_EQ(clean.size(), clip.size() + 2 * Silence);
    EXPECT_THAT(std::vector<float>(clean.begin(), clean.begin() + Silence), Each(0.0F));
    EXPECT_TRUE(std::equal(clip.begin(), clip.end(), clean.begin() + Silence));
    EXPECT_THAT(std::vector<float>(clean.end() - Silence, clean.end()), Each(0.0F));
}

TEST_F(Condition, NoiseLiesSoFarBelowTheClip)
{
    for (const std::string kind : {"babble", "pink", "white"})
    {
        for (const int decibels : {20, 10, 5})
        {
            SCOPED_TRACE(kind + " " + std::to_string(decibels));
            const std::vector<float> mixed = Apply(kind + " " + std::to_string(decibels) + " dB");
            ASSERT_EQ(mixed.size(), clip.size() + 2 * Silence);
            EXPECT_NEAR(Decibels(std::span(mixed).first(Silence)), Decibels(clip) - decibels, 2.0);
        }
    }
}

TEST_F(Condition, EachClipHasNoiseOfItsOwnTheSameEveryTime)
{
    for (const std::string name : {"babble 10 dB", "pink 10 dB", "white 10 dB", "room"})
    {
        EXPECT_EQ(Apply(name, 1), Apply(name, 1)) << name;
        EXPECT_NE(Apply(name, 1), Apply(name, 2)) << name;
    }
}

TEST_F(Condition, PinkNoiseFallsByThreeDecibelsAnOctave)
{
    clip.assign(10 * Second, 0.1F); // the noise alone is what changes from sample to sample
    const std::vector<float> noise = [&] {
        std::vector<float> mixed = Apply("pink 20 dB");
        mixed.resize(Silence);
        return mixed;
    }();
    // A difference of neighbours weighs every octave by 6 dB: pink noise has less of it than white noise.
    std::vector<float> differences;
    for (std::size_t i = 1; i < noise.size(); ++i)
    {
        differences.push_back(noise[i] - noise[i - 1]);
    }
    EXPECT_LT(Decibels(differences), Decibels(noise) - 3.0); // white: +3
}

TEST_F(Condition, ARoomIsHeardBehindTheClip)
{
    const std::vector<float> heard = Apply("room");
    const std::span<const float> all(heard);
    const double tail = Decibels(all.subspan(Silence + clip.size() + 400, 800));
    EXPECT_GT(tail, -60.0);
    EXPECT_LT(tail, Decibels(all.subspan(Silence, clip.size())));
    EXPECT_NEAR(
        std::abs(*std::max_element(heard.begin(), heard.end(), [](float a, float b) { return std::abs(a) < std::abs(b); })), 0.5F,
        1e-3F);
}

TEST_F(Condition, ATelephoneCarriesTheMiddleAlone)
{
    const struct
    {
        double hertz;
        double least;
        double most;
    } cases[]{{100.0, -200.0, -25.0}, {1000.0, -0.5, 0.5}, {6000.0, -200.0, -25.0}};
    for (const auto& own : cases)
    {
        SCOPED_TRACE(own.hertz);
        clip = Signals::Sine(own.hertz, 0.1, Second);
        const std::vector<float> heard = Apply("telephone");
        const double change = Decibels(std::span(heard).subspan(Silence + 2000, 12'000)) - Decibels(clip);
        EXPECT_GT(change, own.least);
        EXPECT_LT(change, own.most);
    }
}

TEST_F(Condition, ALowPassCutsAboveFourKilohertz)
{
    clip = Signals::Sine(3000.0, 0.1, Second);
    EXPECT_NEAR(Decibels(Part(Apply("low-pass 4 kHz"), Silence + 2000, 12'000)), Decibels(clip), 0.5);
    clip = Signals::Sine(5000.0, 0.1, Second);
    EXPECT_LT(Decibels(Part(Apply("low-pass 4 kHz"), Silence + 2000, 12'000)), Decibels(clip) - 25.0);
}

TEST_F(Condition, LevelsChangeWithoutClipping)
{
    const auto middle = [](const std::vector<float>& samples) {
        return std::vector<float>(samples.begin() + Silence, samples.begin() + Silence + Second);
    };
    EXPECT_NEAR(Decibels(middle(Apply("level -20 dB"))), Decibels(clip) - 20.0, 0.1);
    EXPECT_NEAR(Decibels(middle(Apply("level -10 dB"))), Decibels(clip) - 10.0, 0.1);
    EXPECT_NEAR(Decibels(middle(Apply("level 10 dB"))), Decibels(clip) + 10.0, 0.1);
    clip = Signals::Sine(1000.0, 0.5, Second);
    const std::vector<float> loud = middle(Apply("level 10 dB"));
    EXPECT_NEAR(*std::max_element(loud.begin(), loud.end()), 0.99F, 1e-3F);
}

TEST_F(Condition, TempoChangesTheLengthAlone)
{
    EXPECT_NEAR(static_cast<double>(Apply("tempo 0.75").size() - 2 * Silence), Second / 0.75, 500.0);
    EXPECT_NEAR(static_cast<double>(Apply("tempo 1.35").size() - 2 * Silence), Second / 1.35, 500.0);
}

TEST_F(Condition, NoiseBeginsWithTheTakeOrWasThereBefore)
{
    for (const std::string kind : {"babble", "pink", "white"})
    {
        SCOPED_TRACE(kind);
        const std::vector<float> sudden = Apply(kind + " 10 dB that begins with the take");
        EXPECT_THAT(std::vector<float>(sudden.begin(), sudden.begin() + Silence), Each(0.0F));
        EXPECT_NEAR(Decibels(std::span(sudden).last(Silence)), Decibels(clip) - 10.0, 2.0);
        const std::vector<float> before = Apply(kind + " 10 dB that was there before");
        ASSERT_EQ(before.size(), 3 * Second + clip.size() + Silence);
        EXPECT_NEAR(Decibels(std::span(before).first(3 * Second)), Decibels(clip) - 10.0, 2.0);
    }
}

TEST_F(Condition, BeforeATakeThereAreZerosOrTheHissOfAQuietRoom)
{
    const std::vector<float> zeros = Apply("after zeros");
    EXPECT_THAT(std::vector<float>(zeros.begin(), zeros.begin() + 3 * Second), Each(0.0F));
    EXPECT_TRUE(std::equal(clip.begin(), clip.end(), zeros.begin() + 3 * Second));
    EXPECT_NEAR(Decibels(Part(Apply("after silence"), 0, 3 * Second)), Decibels(clip) - 45.0, 1.0);
}

TEST_F(Condition, OtherSpeechComesBeforeThePhraseAsLoudAsIt)
{
    const std::vector<float> samples = Apply("after speech", 0);
    ASSERT_EQ(samples.size(), 3 * Second + Silence / 2 + clip.size() + Silence);
    EXPECT_NEAR(Decibels(std::span(samples).first(3 * Second)), Decibels(clip), 0.5);
    EXPECT_TRUE(std::equal(clip.begin(), clip.end(), samples.begin() + 3 * Second + Silence / 2));
}

} // namespace ConditionTests

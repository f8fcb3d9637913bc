#include "evaluation/Condition.h"

#include "tests/engine/support/Signals.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>

using namespace velox::evaluation;
using testing::Each;
using testing::ElementsAre;

namespace
{

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
        for (const auto& conditions : {PlaceConditions(talkers), UserConditions(talkers)})
        {
            for (const auto& condition : conditions)
            {
                if (condition.name == name)
                {
                    return condition.apply(clip, number);
                }
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
    EXPECT_THAT(Names(PlaceConditions(talkers)),
                ElementsAre("clean", "babble 20 dB", "pink 20 dB", "white 20 dB", "babble 10 dB", "pink 10 dB", "white 10 dB",
                            "babble 5 dB", "pink 5 dB", "white 5 dB", "room"));
    EXPECT_THAT(Names(UserConditions(talkers)),
                ElementsAre("telephone", "tempo 0.8", "tempo 1.3", "level +20 dB", "level -20 dB", "after speech"));
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

TEST_F(Condition, LevelsChangeWithoutClipping)
{
    const auto middle = [](const std::vector<float>& samples) {
        return std::vector<float>(samples.begin() + Silence, samples.begin() + Silence + Second);
    };
    EXPECT_NEAR(Decibels(middle(Apply("level -20 dB"))), Decibels(clip) - 20.0, 0.1);
    const std::vector<float> loud = middle(Apply("level +20 dB"));
    EXPECT_NEAR(*std::max_element(loud.begin(), loud.end()), 0.99F, 1e-3F);
}

TEST_F(Condition, OtherSpeechComesBeforeThePhraseAsLoudAsIt)
{
    const std::vector<float> samples = Apply("after speech", 0);
    ASSERT_EQ(samples.size(), 3 * Second + Silence / 2 + clip.size() + Silence);
    EXPECT_NEAR(Decibels(std::span(samples).first(3 * Second)), Decibels(clip), 0.5);
    EXPECT_TRUE(std::equal(clip.begin(), clip.end(), samples.begin() + 3 * Second + Silence / 2));
}

} // namespace

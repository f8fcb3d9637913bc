#include "engine/enrollment/Augmentation.h"

#include "engine/base/AudioFormat.h"
#include "tests/engine/support/Signals.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace AugmentationTests
{

using namespace velox::engine;
using testing::Each;
using testing::FloatNear;
using testing::IsEmpty;
using testing::Pointwise;

using Recordings = std::vector<std::vector<float>>;

Recordings Background()
{
    return {Signals::Noise(0.5, 20000, 21), Signals::Noise(0.01, 3000, 22), Signals::Sine(700.0, 0.2, 9000)};
}

/// What a plan adds to a recording besides its level.
std::vector<float> Added(const std::vector<float>& copy, const std::vector<float>& plain)
{
    // The plain part of the copy: its projection, for the copy's level hides its gain.
    double product = 0.0;
    double energy = 0.0;
    for (std::size_t i = 0; i < plain.size(); ++i)
    {
        product += static_cast<double>(copy[i]) * static_cast<double>(plain[i]);
        energy += static_cast<double>(plain[i]) * static_cast<double>(plain[i]);
    }
    std::vector<float> added(plain.size());
    for (std::size_t i = 0; i < plain.size(); ++i)
    {
        added[i] = copy[i] - static_cast<float>(product / energy) * plain[i];
    }
    return added;
}

double SignalToNoise(const std::vector<float>& copy, const std::vector<float>& plain)
{
    const double noise = Signals::RootMeanSquare(Added(copy, plain));
    const double all = Signals::RootMeanSquare(copy);
    return 10.0 * std::log10((all * all - noise * noise) / (noise * noise));
}

TEST(Augmentation, APlanThatChangesNothingButTheLevelScales)
{
    AugmentationPlan plan;
    plan.level = Signals::Decibels(0.25 / std::numbers::sqrt2);
    EXPECT_THAT(MakeCopy(plan, Signals::Sine(500.0, 0.01, 1600), {}),
                Pointwise(FloatNear(1e-5F), Signals::Sine(500.0, 0.25, 1600)));
}

TEST(Augmentation, TheCopyHasTheLevelOfThePlan)
{
    const Recordings background = Background();
    RandomStream random(3);
    for (int i = 0; i < 30; ++i)
    {
        const AugmentationPlan plan = DrawPlan(TrainingRanges, background, &random);
        const std::vector<float> copy = MakeCopy(plan, Signals::Sine(440.0, 0.03, 24000), background);
        const auto lead = static_cast<double>(LeadSamples(plan));
        const auto size = static_cast<std::size_t>((24000.0 + lead) / plan.speed) - plan.offset;
        ASSERT_EQ(copy.size(), size) << i;
        const auto start = static_cast<std::size_t>(lead / plan.speed);
        EXPECT_NEAR(Signals::Decibels(Signals::RootMeanSquare(std::span(copy).subspan(start))), plan.level, 0.1) << i;
    }
}

TEST(Augmentation, SamplesStayWithinFullScale)
{
    AugmentationPlan plan;
    plan.level = -3.0;
    std::vector<float> peaks(1000, 0.001F);
    peaks[500] = 1.0F;
    EXPECT_EQ(*std::max_element(peaks.begin(), peaks.end()), 1.0F);
    const std::vector<float> copy = MakeCopy(plan, peaks, {});
    EXPECT_EQ(*std::max_element(copy.begin(), copy.end()), 1.0F);
}

TEST(Augmentation, NoiseOfEitherKindHasTheRatioOfThePlan)
{
    const Recordings background = Background();
    const std::vector<float> recording = Signals::Sine(300.0, 0.1, 32000);
    for (const double ratio : {0.0, 10.0, 22.0})
    {
        SCOPED_TRACE(ratio);
        AugmentationPlan plan;
        plan.noise = NoisePlan{ratio, {}, 0, 0.9, 4};
        EXPECT_NEAR(SignalToNoise(MakeCopy(plan, recording, background), recording), ratio, 0.3);
        plan.noise = NoisePlan{ratio, {{0, 100}, {1, 2999}, {2, 0}, {0, 15000}}, 0, 0.0, 0};
        EXPECT_NEAR(SignalToNoise(MakeCopy(plan, recording, background), recording), ratio, 0.3);
    }
}

TEST(Augmentation, APauseIsSilenceWithinTheRecordingAndMakesNoClick)
{
    AugmentationPlan plan;
    plan.pause = Pause{3, 2};
    const std::vector<float> recording(1600, 0.5F);
    const std::vector<float> copy = MakeCopy(plan, recording, {});
    ASSERT_EQ(copy.size(), 1600U + 320U);
    EXPECT_THAT(std::span(copy).subspan(480, 320), Each(0.0F));
    EXPECT_THAT(std::span(copy).first(400), Each(copy[0]));
    EXPECT_THAT(std::span(copy).last(1040), Each(copy[0]));
    for (std::size_t i = 401; i < 480; ++i)
    {
        EXPECT_LT(copy[i], copy[i - 1]) << i;
        EXPECT_FLOAT_EQ(copy[i], copy[1279 - i]) << "the same slope behind it";
    }
}

TEST(Augmentation, NoiseMayBeginWithTheRecording)
{
    AugmentationPlan plan;
    plan.lead = Lead{10, {}, 0.0};
    plan.noise = NoisePlan{0.0, {}, 800, 0.0, 4};
    const std::vector<float> copy = MakeCopy(plan, Signals::Sine(300.0, 0.1, 8000), {});
    EXPECT_THAT(std::span(copy).first(1600), Each(0.0F));
    EXPECT_NEAR(Signals::AmplitudeAt(300.0, std::span(copy).subspan(1600, 800)),
                std::numbers::sqrt2 * Signals::RootMeanSquare(std::span(copy).subspan(1600, 800)), 1e-3);
    EXPECT_GT(Signals::RootMeanSquare(std::span(copy).last(4000)),
              1.3 * Signals::RootMeanSquare(std::span(copy).subspan(1600, 800)));
}

TEST(Augmentation, SilenceAroundTheSpeechMakesTheNoiseNoWeaker)
{
    // A tenth of the recording is sound: over the whole of it the noise would be 10 dB weaker.
    std::vector<float> recording(160000, 0.0F);
    const std::vector<float> sine = Signals::Sine(300.0, 0.1, 16000);
    std::copy(sine.begin(), sine.end(), recording.begin() + 72000);
    AugmentationPlan plan;
    plan.noise = NoisePlan{10.0, {}, 0, 0.0, 4};
    plan.level = -30.0;
    const std::vector<float> copy = MakeCopy(plan, recording, {});
    const double quiet = Signals::RootMeanSquare(std::span(copy).first(64000));
    const double speech = Signals::RootMeanSquare(std::span(copy).subspan(72000, 16000));
    EXPECT_NEAR(Signals::Decibels(std::sqrt(speech * speech - quiet * quiet) / quiet), 10.0, 0.3);
}

TEST(Augmentation, TheLevelIsThatOfTheSpeech)
{
    std::vector<float> recording(160000, 0.0F);
    const std::vector<float> sine = Signals::Sine(300.0, 0.1, 16000);
    std::copy(sine.begin(), sine.end(), recording.begin() + 72000);
    AugmentationPlan plan;
    plan.level = -30.0;
    const std::vector<float> copy = MakeCopy(plan, recording, {});
    EXPECT_NEAR(Signals::Decibels(Signals::RootMeanSquare(std::span(copy).subspan(72000, 16000))), -30.0, 0.1);
}

TEST(Augmentation, PiecesOfBabbleAreEquallyLoud)
{
    // Background 1 is fifty times as quiet as background 0.
    const Recordings background = Background();
    const std::vector<float> recording = Signals::Sine(300.0, 0.1, 3000);
    AugmentationPlan plan;
    plan.noise = NoisePlan{0.0, {{0, 0}, {1, 0}}, 0, 0.0, 0};
    const std::vector<float> both = Added(MakeCopy(plan, recording, background), recording);
    double loud = 0.0;
    double quiet = 0.0;
    for (std::size_t i = 0; i < 3000; ++i)
    {
        loud += static_cast<double>(both[i]) * static_cast<double>(background[0][i]) / 0.5;
        quiet += static_cast<double>(both[i]) * static_cast<double>(background[1][i]) / 0.01;
    }
    EXPECT_NEAR(loud / quiet, 1.0, 0.15);
}

TEST(Augmentation, APieceOfBabbleGoesOnInTheNextRecording)
{
    const Recordings background = {Signals::Noise(0.1, 3000, 21), {}, Signals::Noise(0.1, 9000, 22)};
    const std::vector<float> recording = Signals::Sine(300.0, 0.1, 12000);
    AugmentationPlan plan;
    plan.noise = NoisePlan{0.0, {{0, 1000}}, 0, 0.0, 0};
    const std::vector<float> noise = Added(MakeCopy(plan, recording, background), recording);
    const auto likeness = [&](std::size_t number, std::size_t at, std::size_t start, std::size_t count) {
        double product = 0.0;
        double first = 0.0;
        double second = 0.0;
        for (std::size_t i = 0; i < count; ++i)
        {
            const auto a = static_cast<double>(noise[at + i]);
            const auto b = static_cast<double>(background[number][start + i]);
            product += a * b;
            first += a * a;
            second += b * b;
        }
        return product / std::sqrt(first * second);
    };
    EXPECT_GT(likeness(0, 0, 1000, 2000), 0.99);
    EXPECT_GT(likeness(2, 2000, 0, 9000), 0.99);
    EXPECT_GT(likeness(0, 11000, 0, 1000), 0.99);
}

TEST(Augmentation, BabbleIsDrawnByTheLengthOfTheRecordings)
{
    // Ten words of a second each beside one recording of ten seconds.
    Recordings background(10, std::vector<float>(16000, 0.1F));
    background.emplace_back(160000, 0.1F);
    RandomStream random(1);
    double pieces = 0.0;
    double running = 0.0;
    for (int i = 0; i < 1000; ++i)
    {
        const AugmentationPlan plan = DrawPlan(TrainingRanges, background, &random);
        for (const BackgroundPiece& piece : plan.noise.value_or(NoisePlan{}).babble)
        {
            ++pieces;
            running += piece.recording == 10 ? 1.0 : 0.0;
        }
    }
    EXPECT_NEAR(running / pieces, 0.5, 0.03);
}

TEST(Augmentation, WhatWasHeardBeforeStandsBeforeTheRecording)
{
    const Recordings background = {Signals::Noise(0.3, 20000, 21)};
    const std::vector<float> recording = Signals::Sine(300.0, 0.1, 8000);
    AugmentationPlan plan;
    plan.lead = Lead{50, {{0, 100}}, 6.0};
    plan.level = -30.0;
    const std::vector<float> copy = MakeCopy(plan, recording, background);
    ASSERT_EQ(copy.size(), 16000U);
    EXPECT_NEAR(Signals::Decibels(Signals::RootMeanSquare(std::span(copy).first(8000))), -24.0, 0.1);
    EXPECT_NEAR(Signals::Decibels(Signals::RootMeanSquare(std::span(copy).last(8000))), -30.0, 0.1);

    plan.lead->speech.reset();
    const std::vector<float> afterSilence = MakeCopy(plan, recording, background);
    EXPECT_THAT(std::span(afterSilence).first(8000), Each(0.0F));
}

TEST(Augmentation, TheOffsetIsLeftOutAtTheStart)
{
    AugmentationPlan plan;
    plan.level = Signals::Decibels(0.1 / std::numbers::sqrt2);
    const std::vector<float> recording = Signals::Sine(500.0, 0.1, 1600);
    plan.offset = 37;
    EXPECT_THAT(MakeCopy(plan, recording, {}),
                Pointwise(FloatNear(1e-5F), std::vector<float>(recording.begin() + 37, recording.end())));
    EXPECT_THAT(MakeCopy(plan, std::span(recording).first(20), {}), IsEmpty());
}

TEST(Augmentation, ColouredNoiseLeansTowardsLowFrequencies)
{
    // Pole 0.9: |H|^2 at half the sample rate over that at 0 is (0.1 / 1.9)^2; seen as power of differences over power of sums.
    AugmentationPlan plan;
    plan.noise = NoisePlan{-60.0, {}, 0, 0.9, 8};
    const std::vector<float> copy = MakeCopy(plan, Signals::Sine(300.0, 0.1, 64000), {});
    double neighbours = 0.0;
    double power = 0.0;
    for (std::size_t i = 1; i < copy.size(); ++i)
    {
        neighbours += static_cast<double>(copy[i]) * static_cast<double>(copy[i - 1]);
        power += static_cast<double>(copy[i]) * static_cast<double>(copy[i]);
    }
    EXPECT_NEAR(neighbours / power, 0.9, 0.01);
}

TEST(Augmentation, TheTiltIsThatOfItsTap)
{
    AugmentationPlan plan;
    plan.tilt = 0.5;
    std::vector<float> recording = Signals::Sine(1000.0, 0.1, 16000);
    const std::vector<float> high = Signals::Sine(7000.0, 0.1, 16000);
    std::transform(recording.begin(), recording.end(), high.begin(), recording.begin(), std::plus<>());
    const std::vector<float> copy = MakeCopy(plan, recording, {});
    const auto response = [](double frequency) {
        const double phase = 2.0 * std::numbers::pi * frequency / 16000.0;
        return std::hypot(1.0 + 0.5 * std::cos(phase), 0.5 * std::sin(phase));
    };
    EXPECT_NEAR(Signals::AmplitudeAt(1000.0, copy) / Signals::AmplitudeAt(7000.0, copy), response(1000.0) / response(7000.0),
                0.01);
}

TEST(Augmentation, TheBandTakesWhatLiesOutsideAwayAndMovesNothing)
{
    AugmentationPlan plan;
    plan.band = Band{300.0, 3500.0};
    plan.level = -20.0;
    std::vector<float> recording = Signals::Sine(1000.0, 0.1, 16000);
    for (const double outside : {100.0, 4500.0})
    {
        const std::vector<float> sine = Signals::Sine(outside, 0.1, 16000);
        std::transform(recording.begin(), recording.end(), sine.begin(), recording.begin(), std::plus<>());
    }
    const std::vector<float> copy = MakeCopy(plan, recording, {});
    const auto middle = std::span(copy).subspan(1600, 12800);
    for (const double outside : {100.0, 4500.0})
    {
        EXPECT_LT(Signals::Decibels(Signals::AmplitudeAt(outside, middle) / Signals::AmplitudeAt(1000.0, middle)), -30.0)
            << outside;
    }
    const std::vector<float> inside = Signals::Sine(1000.0, 0.1 * std::numbers::sqrt2, 16000);
    for (std::size_t i = 1600; i < 1700; ++i)
    {
        EXPECT_NEAR(copy[i], inside[i], 0.005) << i;
    }
}

TEST(Augmentation, WithoutALowerEdgeLowFrequenciesStay)
{
    AugmentationPlan plan;
    plan.band = Band{0.0, 3500.0};
    std::vector<float> recording = Signals::Sine(1000.0, 0.1, 16000);
    const std::vector<float> low = Signals::Sine(100.0, 0.1, 16000);
    std::transform(recording.begin(), recording.end(), low.begin(), recording.begin(), std::plus<>());
    const std::vector<float> copy = MakeCopy(plan, recording, {});
    const auto middle = std::span(copy).subspan(1600, 12800);
    EXPECT_NEAR(Signals::AmplitudeAt(100.0, middle) / Signals::AmplitudeAt(1000.0, middle), 1.0, 0.01);
}

TEST(Augmentation, TheRoomFollowsTheDirectSound)
{
    AugmentationPlan plan;
    plan.room = Room{0.2, 6.0, 9};
    plan.level = -50.0;
    std::vector<float> click(8000, 0.0F);
    click[1000] = 0.5F;
    const std::vector<float> copy = MakeCopy(plan, click, {});
    EXPECT_EQ(std::max_element(copy.begin(), copy.end()) - copy.begin(), 1000);
    const double direct = static_cast<double>(copy[1000]) * static_cast<double>(copy[1000]);
    const auto tail = std::span(copy).subspan(1001);
    const double reverberant = std::pow(Signals::RootMeanSquare(tail), 2.0) * static_cast<double>(tail.size());
    EXPECT_NEAR(10.0 * std::log10(direct / reverberant), 6.0, 0.05);
}

TEST(Augmentation, SilenceStaysSilentAndEmptyStaysEmpty)
{
    AugmentationPlan plan;
    plan.speed = 1.1;
    plan.room = Room{};
    plan.noise = NoisePlan{};
    EXPECT_THAT(MakeCopy(plan, std::vector<float>(1000, 0.0F), {}), Each(0.0F));
    EXPECT_THAT(MakeCopy(plan, {}, {}), IsEmpty());
}

TEST(Augmentation, AnEmptyBackgroundRecordingAddsNothing)
{
    AugmentationPlan plan;
    plan.noise = NoisePlan{0.0, {{0, 0}}, 0, 0.0, 0};
    plan.level = Signals::Decibels(0.1 / std::numbers::sqrt2);
    EXPECT_THAT(MakeCopy(plan, Signals::Sine(500.0, 0.1, 1600), Recordings{{}}),
                Pointwise(FloatNear(1e-5F), Signals::Sine(500.0, 0.1, 1600)));
}

TEST(Augmentation, PlansAreDrawnFromTheRangesInTheirShares)
{
    constexpr int Plans = 4000;
    const Recordings background = Background();
    RandomStream random(1);
    double lead = 0.0;
    double leadSpeech = 0.0;
    double offset = 0.0;
    double speed = 0.0;
    double tilt = 0.0;
    double band = 0.0;
    double lowerEdge = 0.0;
    double room = 0.0;
    double noise = 0.0;
    double babble = 0.0;
    double sudden = 0.0;
    for (int i = 0; i < Plans; ++i)
    {
        const AugmentationPlan plan = DrawPlan(TrainingRanges, background, &random);
        lead += plan.lead.has_value() ? 1.0 : 0.0;
        leadSpeech += plan.lead.has_value() && plan.lead->speech.has_value() ? 1.0 : 0.0;
        offset += static_cast<double>(plan.offset) / 159.0;
        ASSERT_LT(plan.offset, FrameSize);
        speed += plan.speed != 1.0 ? 1.0 : 0.0;
        tilt += plan.tilt != 0.0 ? 1.0 : 0.0;
        band += plan.band.has_value() ? 1.0 : 0.0;
        lowerEdge += plan.band.has_value() && plan.band->low > 0.0 ? 1.0 : 0.0;
        room += plan.room.has_value() ? 1.0 : 0.0;
        noise += plan.noise.has_value() ? 1.0 : 0.0;
        sudden += plan.noise.has_value() && plan.noise->quiet > 0 ? 1.0 : 0.0;
        babble += plan.noise.has_value() && !plan.noise->babble.empty() ? 1.0 : 0.0;
        ASSERT_TRUE(plan.speed >= 0.77 && plan.speed <= 1.33);
        const double formant = plan.speed / plan.warp;
        ASSERT_TRUE(formant >= 0.85 - 1e-9 && formant <= 1.18 + 1e-9) << formant;
        ASSERT_TRUE(std::abs(plan.tilt) <= 0.5);
        if (plan.band.has_value())
        {
            ASSERT_TRUE(plan.band->low == 0.0 || (plan.band->low >= 150.0 && plan.band->low <= 400.0));
            ASSERT_TRUE(plan.band->high >= 3300.0 && plan.band->high <= 4800.0);
        }
        ASSERT_TRUE(plan.level >= -38.0 && plan.level <= -16.0);
        if (plan.room.has_value())
        {
            ASSERT_TRUE(plan.room->reverberationTime >= 0.15 && plan.room->reverberationTime <= 0.8);
            ASSERT_TRUE(plan.room->directToReverberant >= -2.0 && plan.room->directToReverberant <= 10.0);
        }
        if (plan.noise.has_value())
        {
            ASSERT_TRUE(plan.noise->signalToNoise >= 0.0 && plan.noise->signalToNoise <= 35.0);
            for (const BackgroundPiece& piece : plan.noise->babble)
            {
                ASSERT_LT(piece.recording, background.size());
                ASSERT_LT(piece.start, background[piece.recording].size());
            }
            const std::size_t pieces = plan.noise->babble.size();
            ASSERT_TRUE(pieces == 0 || (pieces >= 4 && pieces <= 9)) << pieces;
        }
    }
    constexpr double Tolerance = 0.025; // three deviations of a share of one half
    EXPECT_NEAR(lead / Plans, 0.4, Tolerance);
    EXPECT_NEAR(leadSpeech / Plans, 0.24, Tolerance);
    EXPECT_NEAR(offset / Plans, 0.5, Tolerance);
    EXPECT_NEAR(speed / Plans, 0.7, Tolerance);
    EXPECT_NEAR(tilt / Plans, 0.75, Tolerance);
    EXPECT_NEAR(band / Plans, 0.25, Tolerance);
    EXPECT_NEAR(lowerEdge / Plans, 0.15, Tolerance);
    EXPECT_NEAR(room / Plans, 0.4, Tolerance);
    EXPECT_NEAR(noise / Plans, 0.9, Tolerance);
    EXPECT_NEAR(sudden / noise, 0.25, Tolerance);
    EXPECT_NEAR(babble / noise, 0.65, Tolerance);
}

TEST(Augmentation, CopiesForAUserKeepTheVoice)
{
    RandomStream random(2);
    int otherTempo = 0;
    for (int i = 0; i < 200; ++i)
    {
        const AugmentationPlan plan = DrawPlan(EnrollmentRanges, {}, &random);
        ASSERT_FALSE(plan.lead.has_value());
        ASSERT_EQ(plan.warp, plan.speed) << "the formants stay";
        otherTempo += static_cast<int>(plan.speed != 1.0);
        ASSERT_TRUE(!plan.noise.has_value() || (plan.noise->signalToNoise >= 5.0 && plan.noise->signalToNoise <= 25.0));
    }
    EXPECT_NEAR(otherTempo / 200.0, 0.5, 0.1);
}

TEST(Augmentation, WithoutBackgroundAllNoiseIsColoured)
{
    RandomStream random(2);
    for (int i = 0; i < 200; ++i)
    {
        const AugmentationPlan plan = DrawPlan(TrainingRanges, {}, &random);
        ASSERT_TRUE(!plan.noise.has_value() || plan.noise->babble.empty());
    }
}

TEST(Augmentation, TheSameSeedGivesTheSameCopies)
{
    const Recordings background = Background();
    const std::vector<float> recording = Signals::Noise(0.1, 8000, 5);
    RandomStream first(77);
    RandomStream second(77);
    for (int i = 0; i < 5; ++i)
    {
        const AugmentationPlan plan = DrawPlan(TrainingRanges, background, &first);
        const AugmentationPlan again = DrawPlan(TrainingRanges, background, &second);
        EXPECT_EQ(MakeCopy(plan, recording, background), MakeCopy(again, recording, background)) << i;
    }
}

} // namespace AugmentationTests

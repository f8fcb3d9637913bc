#include "firmware/DspSimulator.h"

#include "docs/samples/Simulator.h"
#include "tests/engine/support/TinyLanguage.h"
#include "tests/firmware/support/HandMadePattern.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <limits>

namespace DspSimulatorTests
{

using namespace velox::firmware;
using HandMadePattern::Make;
using Dsp = velox::firmware::DspSimulator;
using Tones = std::vector<std::size_t>;
using Bytes = std::vector<uint8_t>;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::size_t HalfSecond = 8000;
constexpr uint32_t Low = 60 * 256;

const Tones PhraseTones{0, 1, 2, 3};

Bytes Pattern(uint32_t threshold = Low)
{
    return Make(TinyLanguage::Phrase(), threshold);
}

/// Phrases one after the other, with half a second of noise around each.
std::vector<float> Phrases(int count)
{
    std::vector<float> audio;
    for (int i = 0; i < count; ++i)
    {
        const auto said = TinyLanguage::SayPhrase({}, static_cast<uint64_t>(i) + 1);
        audio.insert(audio.end(), said.begin(), said.end());
    }
    return audio;
}

Bytes Copy(const ResultBlock& block)
{
    return {block.Bytes().begin(), block.Bytes().end()};
}

uint64_t U64(const Bytes& block, std::size_t offset)
{
    uint64_t number = 0;
    for (std::size_t i = 8; i-- > 0;)
    {
        number = number << 8U | block[offset + i];
    }
    return number;
}

/// Feeds blocks of one size and, as the system does, arms again after each detection.
std::vector<Bytes> Detections(Dsp* dsp, std::span<const float> audio, std::size_t blockSize, bool armAgain = true)
{
    std::vector<Bytes> detections;
    while (!audio.empty())
    {
        std::span<const float> block = audio.first(std::min(blockSize, audio.size()));
        audio = audio.subspan(block.size());
        while (!block.empty())
        {
            if (const auto result = dsp->Hear(&block))
            {
                detections.push_back(Copy(*result));
                if (armAgain)
                {
                    EXPECT_TRUE(dsp->Arm());
                }
            }
        }
    }
    return detections;
}

class DspSimulator : public testing::Test
{
protected:
    void ArmWith(const Bytes& pattern)
    {
        ASSERT_EQ(dsp.SetPattern(pattern), std::nullopt);
        ASSERT_TRUE(dsp.Arm());
    }

    std::vector<Peak> peaks;
    Dsp dsp{HandMadePattern::Detector, {}, [this](const Peak& peak) {
                peaks.push_back(peak);
            }};
};

TEST_F(DspSimulator, FiresOnThePhraseAndTellsItsPlaceAndScore)
{
    ArmWith(Pattern());
    const auto detections = Detections(&dsp, Phrases(1), 480);
    ASSERT_THAT(detections, SizeIs(1));
    ASSERT_THAT(peaks, SizeIs(1));
    const velox::engine::Detection& detection = peaks[0].detection;
    EXPECT_NEAR(static_cast<double>(detection.startSample), static_cast<double>(HalfSecond + TinyLanguage::StartPadding), 480.0);
    EXPECT_EQ(U64(detections[0], 28), static_cast<uint64_t>(detection.startSample) * 625);
    EXPECT_EQ(U64(detections[0], 36), static_cast<uint64_t>(detection.endSample) * 625);
    EXPECT_EQ(detections[0][52] * 256 + detections[0][53], peaks[0].score);
    EXPECT_NEAR(peaks[0].score / 256.0, detection.score, 0.5 / 256.0);
    EXPECT_TRUE(peaks[0].passed);
}

TEST_F(DspSimulator, ListensWithAUsersModelToo)
{
    velox::engine::PhraseModel model = TinyLanguage::UserPhrase();
    ArmWith(Make(model, Low));
    EXPECT_TRUE(dsp.HasUserModel());
    EXPECT_THAT(Detections(&dsp, Phrases(1), 480), SizeIs(1));

    model.speaker->threshold = 20.0F; // nobody sounds enough like the user
    ArmWith(Make(model, Low));
    EXPECT_THAT(Detections(&dsp, Phrases(1), 480), IsEmpty());
    ASSERT_THAT(peaks, SizeIs(2));
    EXPECT_GT(peaks[1].detection.phraseScore, 60.0F);
    EXPECT_FALSE(peaks[1].passed);
}

TEST_F(DspSimulator, FiresAtTheThresholdAndNotBelow)
{
    ArmWith(Pattern());
    ASSERT_THAT(Detections(&dsp, Phrases(1), 480), SizeIs(1));
    const uint32_t score = peaks.at(0).score;

    ArmWith(Pattern(score));
    EXPECT_THAT(Detections(&dsp, Phrases(1), 480), SizeIs(1));
    ArmWith(Pattern(score + 1));
    EXPECT_THAT(Detections(&dsp, Phrases(1), 480), IsEmpty());
    ASSERT_THAT(peaks, SizeIs(3));
    EXPECT_FALSE(peaks[2].passed) << "but the debugging port tells of it";
    EXPECT_TRUE(dsp.IsArmed()) << "what did not fire does not disarm";
}

TEST_F(DspSimulator, BlocksOfAnySizeGiveTheSameDetections)
{
    std::vector<float> audio = Phrases(2);
    const auto other = TinyLanguage::Say(Tones{0, 2, 1, 3}, HalfSecond, 0);
    audio.insert(audio.end(), other.begin(), other.end());
    std::vector<Bytes> expected;
    for (std::size_t size = 1; size <= 5000; size += size < 330 ? 1 : 67)
    {
        SCOPED_TRACE(size);
        Dsp fresh(HandMadePattern::Detector);
        ASSERT_EQ(fresh.SetPattern(Pattern()), std::nullopt);
        ASSERT_TRUE(fresh.Arm());
        const auto detections = Detections(&fresh, audio, size);
        if (size == 1)
        {
            expected = detections;
            ASSERT_THAT(expected, SizeIs(2));
        }
        ASSERT_EQ(detections, expected);
        ASSERT_EQ(fresh.SamplesHeard(), static_cast<int64_t>(audio.size()));
    }
}

TEST_F(DspSimulator, ADetectionDisarmsAndLeavesTheRestOfTheBlock)
{
    ArmWith(Pattern());
    const std::vector<float> audio = Phrases(2);
    std::span<const float> rest = audio;
    ASSERT_TRUE(dsp.Hear(&rest).has_value());
    EXPECT_FALSE(dsp.IsArmed());
    EXPECT_EQ(dsp.SamplesHeard(), static_cast<int64_t>(audio.size() - rest.size()));
    EXPECT_LT(dsp.SamplesHeard(), static_cast<int64_t>(audio.size() / 2));
    EXPECT_FALSE(dsp.Hear(&rest).has_value()) << "not armed again: deaf";
    EXPECT_TRUE(rest.empty());
    EXPECT_EQ(dsp.SamplesHeard(), static_cast<int64_t>(audio.size()));
    EXPECT_TRUE(dsp.HasPattern()) << "but the pattern stays";
}

TEST_F(DspSimulator, ArmedAgainItFiresAgainAtTheRightPlace)
{
    ArmWith(Pattern());
    const std::vector<float> audio = Phrases(3);
    ASSERT_THAT(Detections(&dsp, audio, 1000), SizeIs(3));
    ASSERT_THAT(peaks, SizeIs(3));
    for (std::size_t i = 0; i < 3; ++i)
    {
        const double start = static_cast<double>(i * audio.size() / 3 + HalfSecond);
        EXPECT_NEAR(static_cast<double>(peaks[i].detection.startSample), start + static_cast<double>(TinyLanguage::StartPadding),
                    480.0);
    }
}

TEST_F(DspSimulator, AudioBeforeArmingCountsButIsForgotten)
{
    const std::vector<float> phrase = TinyLanguage::SayPhrase();
    const std::vector<float> audio = Phrases(2);
    ASSERT_EQ(dsp.SetPattern(Pattern()), std::nullopt);
    std::span<const float> first = std::span(audio).first(phrase.size());
    EXPECT_FALSE(dsp.Hear(&first).has_value());
    ASSERT_TRUE(dsp.Arm());
    ASSERT_THAT(Detections(&dsp, std::span(audio).subspan(phrase.size()), 480), SizeIs(1));
    EXPECT_NEAR(static_cast<double>(peaks.at(0).detection.startSample),
                static_cast<double>(phrase.size() + HalfSecond + TinyLanguage::StartPadding), 480.0);
}

TEST_F(DspSimulator, ArmingInTheMiddleOfThePhraseHearsNothing)
{
    ArmWith(Pattern());
    const std::vector<float> audio = Phrases(1);
    std::span<const float> part = std::span(audio).first(HalfSecond + TinyLanguage::PhraseSamples / 2);
    EXPECT_FALSE(dsp.Hear(&part).has_value());
    ASSERT_TRUE(dsp.Arm());
    EXPECT_THAT(Detections(&dsp, std::span(audio).subspan(HalfSecond + TinyLanguage::PhraseSamples / 2), 480), IsEmpty());
}

TEST_F(DspSimulator, ArmingWithoutAPatternHasNoEffect)
{
    EXPECT_FALSE(dsp.Arm());
    EXPECT_FALSE(dsp.IsArmed());
    EXPECT_EQ(dsp.Threshold(), 0U);
    EXPECT_FALSE(dsp.HasUserModel());
    EXPECT_THAT(Detections(&dsp, Phrases(1), 480), IsEmpty());
}

TEST_F(DspSimulator, DisarmedItHearsNothing)
{
    ArmWith(Pattern());
    dsp.Disarm();
    EXPECT_THAT(Detections(&dsp, Phrases(1), 480), IsEmpty());
    EXPECT_THAT(peaks, IsEmpty());
    EXPECT_TRUE(dsp.HasPattern());
}

TEST_F(DspSimulator, ANewPatternDisarms)
{
    ArmWith(Pattern());
    ASSERT_EQ(dsp.SetPattern(Pattern(Low + 1)), std::nullopt);
    EXPECT_FALSE(dsp.IsArmed());
    EXPECT_EQ(dsp.Threshold(), Low + 1);
    EXPECT_THAT(Detections(&dsp, Phrases(1), 480), IsEmpty());
    ASSERT_TRUE(dsp.Arm());
    EXPECT_THAT(Detections(&dsp, Phrases(1), 480), SizeIs(1));
}

TEST_F(DspSimulator, ARefusedPatternDisarmsAndLeavesNone)
{
    ArmWith(Pattern());
    Bytes bad = Pattern();
    bad[32] = 1;
    EXPECT_EQ(dsp.SetPattern(bad), PatternRefusal::Reserved1);
    EXPECT_FALSE(dsp.HasPattern());
    EXPECT_FALSE(dsp.Arm());
}

TEST_F(DspSimulator, TellsHowNearThePhraseIs)
{
    EXPECT_EQ(dsp.CurrentScore(), std::nullopt);
    ArmWith(Pattern(255 * 256));
    const std::vector<float> audio = Phrases(1);
    std::vector<float> scores;
    for (std::span<const float> left = audio; !left.empty();)
    {
        std::span<const float> block = left.first(std::min<std::size_t>(160, left.size()));
        left = left.subspan(block.size());
        dsp.Hear(&block);
        scores.push_back(dsp.CurrentScore().value_or(0.0F));
    }
    ASSERT_THAT(peaks, SizeIs(1));
    EXPECT_EQ(*std::ranges::max_element(scores), peaks[0].detection.searchScore);
    EXPECT_LT(scores.front(), 1.0F);
    dsp.Disarm();
    EXPECT_EQ(dsp.CurrentScore(), std::nullopt);
}

TEST_F(DspSimulator, SilenceOfTheLatencyBringsTheLastKeyword)
{
    EXPECT_EQ(dsp.Latency(), 0);
    ArmWith(Pattern());
    for (const std::size_t cut : {0U, 1U, 80U, 159U})
    {
        SCOPED_TRACE(cut);
        ASSERT_TRUE(dsp.Arm());
        std::vector<float> audio = TinyLanguage::Say(PhraseTones, HalfSecond, 0);
        audio.resize(audio.size() - cut);
        ASSERT_THAT(Detections(&dsp, audio, 480), IsEmpty());
        const std::vector<float> silence(static_cast<std::size_t>(dsp.Latency()), 0.0F);
        EXPECT_THAT(Detections(&dsp, silence, 480), SizeIs(1));
    }
}

TEST_F(DspSimulator, PositionsHaveOffsetAndDrift)
{
    ArmWith(Pattern());
    const std::vector<float> audio = Phrases(1);
    ASSERT_THAT(Detections(&dsp, audio, 480), SizeIs(1));
    const auto start = static_cast<uint64_t>(peaks.at(0).detection.startSample);
    const auto end = static_cast<uint64_t>(peaks.at(0).detection.endSample);

    Dsp drifting(HandMadePattern::Detector, {5'000'000'000, 1600});
    ASSERT_EQ(drifting.SetPattern(Pattern()), std::nullopt);
    ASSERT_TRUE(drifting.Arm());
    const auto detections = Detections(&drifting, audio, 480);
    ASSERT_THAT(detections, SizeIs(1));
    EXPECT_EQ(U64(detections[0], 28), 5'000'000'000 + start * 626) << "1600 ppm make a sample a tick longer";
    EXPECT_EQ(U64(detections[0], 36), 5'000'000'000 + end * 626);
}

TEST_F(DspSimulator, WhatIsNoNumberIsSilenceAndWhatIsTooLoudIsClipped)
{
    ArmWith(Pattern());
    std::vector<float> audio = Phrases(1);
    std::vector<float> wild = audio;
    std::vector<float> tame = audio;
    const std::array<std::pair<float, float>, 5> samples{{{std::numeric_limits<float>::quiet_NaN(), 0.0F},
                                                          {std::numeric_limits<float>::infinity(), 1.0F},
                                                          {-std::numeric_limits<float>::infinity(), -1.0F},
                                                          {1.5F, 1.0F},
                                                          {-7.0F, -1.0F}}};
    for (std::size_t i = 0; i < samples.size(); ++i)
    {
        std::tie(wild[100 * i], tame[100 * i]) = samples[i];
    }
    const auto expected = Detections(&dsp, tame, 480);
    ASSERT_THAT(expected, SizeIs(1));

    Dsp fresh(HandMadePattern::Detector);
    ASSERT_EQ(fresh.SetPattern(Pattern()), std::nullopt);
    ASSERT_TRUE(fresh.Arm());
    EXPECT_EQ(Detections(&fresh, wild, 480), expected);
}

TEST_F(DspSimulator, TheDocumentationsSampleDrivesIt)
{
    std::vector<std::size_t> sizes;
    HearWithPattern(HandMadePattern::Detector, Pattern(), Phrases(2),
                    [&](std::span<const uint8_t> block) { sizes.push_back(block.size()); });
    EXPECT_THAT(sizes, ElementsAre(60U, 60U));
    EXPECT_THROW(HearWithPattern(HandMadePattern::Detector, {}, Phrases(1), [](std::span<const uint8_t>) {}), std::runtime_error);
}

TEST_F(DspSimulator, AFaultyBlockDisarmsAsAGoodOneDoes)
{
    for (const Fault fault : {Fault::ForeignGuid, Fault::TruncatedBlock, Fault::UnknownKeyword})
    {
        SCOPED_TRACE(static_cast<int>(fault));
        dsp.SetFault(Fault::None);
        ArmWith(Pattern());
        const Bytes good = Detections(&dsp, Phrases(1), 480, false).at(0);
        peaks.clear();
        dsp.SetFault(fault);
        ArmWith(Pattern());
        const auto detections = Detections(&dsp, Phrases(2), 480, false);
        ASSERT_THAT(detections, SizeIs(1));
        EXPECT_FALSE(dsp.IsArmed());
        EXPECT_EQ(detections[0].size(), fault == Fault::TruncatedBlock ? 52U : 60U);
        EXPECT_EQ(detections[0][4] == good[4], fault != Fault::ForeignGuid);
        EXPECT_EQ(detections[0][48], fault == Fault::UnknownKeyword ? 2 : 1);
    }
}

TEST_F(DspSimulator, AResetLosesPatternAndArmingInsteadOfReporting)
{
    dsp.SetFault(Fault::Reset);
    ArmWith(Pattern());
    EXPECT_THAT(Detections(&dsp, Phrases(2), 480), IsEmpty());
    ASSERT_THAT(peaks, SizeIs(1)) << "deaf from then on";
    EXPECT_TRUE(peaks[0].passed);
    EXPECT_FALSE(dsp.IsArmed());
    EXPECT_FALSE(dsp.HasPattern());
    EXPECT_FALSE(dsp.Arm());
    EXPECT_EQ(dsp.SamplesHeard(), static_cast<int64_t>(Phrases(2).size())) << "the counter goes on";

    dsp.SetFault(Fault::None);
    ArmWith(Pattern());
    EXPECT_THAT(Detections(&dsp, Phrases(1), 480), SizeIs(1)) << "set and armed again it listens";
}

TEST_F(DspSimulator, AStalePatternStaysInUse)
{
    dsp.SetFault(Fault::StalePattern);
    ArmWith(Pattern(Low));
    EXPECT_EQ(dsp.Threshold(), Low) << "the first one has none before it";
    ArmWith(Make(TinyLanguage::UserPhrase(), 255 * 256));
    EXPECT_EQ(dsp.Threshold(), Low);
    EXPECT_FALSE(dsp.HasUserModel());
    EXPECT_THAT(Detections(&dsp, Phrases(1), 480), SizeIs(1));
    Bytes bad = Pattern();
    bad[36] = 1;
    EXPECT_EQ(dsp.SetPattern(bad), PatternRefusal::Reserved2) << "what is refused leaves no pattern all the same";
    EXPECT_FALSE(dsp.HasPattern());
}

} // namespace DspSimulatorTests

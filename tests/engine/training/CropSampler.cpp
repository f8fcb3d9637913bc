#include "engine/training/CropSampler.h"

#include <gmock/gmock.h>

#include <map>

namespace CropSamplerTests
{

using velox::engine::PaddedSequence;
using velox::engine::RandomStream;
using velox::engine::TrainingSequence;
using Sampler = velox::engine::CropSampler;

constexpr int Background = 1;
constexpr Eigen::Index Crop = 120;
constexpr int Draws = 4000;

TrainingSequence Noise(Eigen::Index frames, float weight)
{
    return {Eigen::MatrixXf::Zero(1, frames), std::vector<int>(static_cast<std::size_t>(frames), Background), weight, false};
}

TrainingSequence Take(Eigen::Index frames, Eigen::Index begin, Eigen::Index end, float weight = 1.0F)
{
    TrainingSequence take = Noise(frames, weight);
    take.isTake = true;
    std::fill(take.labels.begin() + begin, take.labels.begin() + end, 0);
    return take;
}

struct Outcome
{
    std::map<const TrainingSequence*, int> draws;
    Eigen::Index earliest = 1'000'000;
    Eigen::Index latest = -1'000'000;
};

Outcome DrawMany(const std::vector<TrainingSequence>& sequences, bool fromTake)
{
    const Sampler sampler(sequences, Background);
    RandomStream random(1);
    Outcome outcome;
    for (int i = 0; i < Draws; ++i)
    {
        const Sampler::Place place = sampler.Draw(fromTake, Crop, &random);
        ++outcome.draws[&place.sequence->Sequence()];
        outcome.earliest = std::min(outcome.earliest, place.first);
        outcome.latest = std::max(outcome.latest, place.first);
    }
    return outcome;
}

TEST(CropSampler, DrawsTakesByTheirWeights)
{
    const std::vector<TrainingSequence> sequences{Take(200, 50, 150, 1.0F), Take(400, 50, 150, 3.0F), Noise(1000, 100.0F)};
    Outcome outcome = DrawMany(sequences, true);
    EXPECT_NEAR(static_cast<double>(outcome.draws[&sequences[1]]) / Draws, 0.75, 0.03);
    EXPECT_EQ(outcome.draws[&sequences[2]], 0);
}

TEST(CropSampler, DrawsOthersByTheirWeightsAndLengths)
{
    const std::vector<TrainingSequence> sequences{Noise(1000, 1.0F), Noise(500, 6.0F), Take(200, 50, 150, 100.0F)};
    Outcome outcome = DrawMany(sequences, false);
    EXPECT_NEAR(static_cast<double>(outcome.draws[&sequences[1]]) / Draws, 0.75, 0.03);
    EXPECT_EQ(outcome.draws[&sequences[2]], 0);
}

TEST(CropSampler, AShortPhraseLiesInTheCropButForTheMargin)
{
    // Frames 200 to 259: a crop from 140 ends with the phrase, one from 200 begins with it.
    const Outcome outcome = DrawMany({Take(500, 200, 260)}, true);
    EXPECT_EQ(outcome.earliest, 140 - Sampler::Margin);
    EXPECT_EQ(outcome.latest, 200 + Sampler::Margin);
}

TEST(CropSampler, ACropLiesInALongPhraseButForTheMargin)
{
    const Outcome outcome = DrawMany({Take(500, 100, 300)}, true);
    EXPECT_EQ(outcome.earliest, 100 - Sampler::Margin);
    EXPECT_EQ(outcome.latest, 180 + Sampler::Margin);
}

TEST(CropSampler, ACropLiesAnywhereInAnotherSequence)
{
    const Outcome outcome = DrawMany({Noise(300, 1.0F)}, false);
    EXPECT_EQ(outcome.earliest, 0);
    EXPECT_EQ(outcome.latest, 180);
}

TEST(CropSampler, AShortSequenceLiesAnywhereInTheCrop)
{
    const Outcome outcome = DrawMany({Noise(100, 1.0F)}, false);
    EXPECT_EQ(outcome.earliest, -20);
    EXPECT_EQ(outcome.latest, 0);
}

TEST(CropSampler, ATakeWithoutAPhraseIsAnOther)
{
    const std::vector<TrainingSequence> sequences{Take(200, 0, 0), Take(200, 50, 150)};
    EXPECT_EQ(DrawMany(sequences, false).draws[&sequences[0]], Draws);
    EXPECT_EQ(DrawMany(sequences, true).draws[&sequences[1]], Draws);
}

TEST(CropSampler, OneKindStandsInForTheOtherThatIsMissing)
{
    const std::vector<TrainingSequence> noise{Noise(200, 1.0F)};
    EXPECT_EQ(DrawMany(noise, true).draws[noise.data()], Draws);
    const std::vector<TrainingSequence> take{Take(200, 50, 150)};
    EXPECT_EQ(DrawMany(take, false).draws[take.data()], Draws);
}

TEST(CropSampler, IsEmptyWithoutFramesAndWeight)
{
    EXPECT_TRUE(Sampler({}, Background).Empty());
    const std::vector<TrainingSequence> nothing{Noise(0, 1.0F), Noise(10, 0.0F), Take(10, 2, 8, 0.0F)};
    EXPECT_TRUE(Sampler(nothing, Background).Empty());
    const std::vector<TrainingSequence> something{Noise(1, 1.0F)};
    EXPECT_FALSE(Sampler(something, Background).Empty());
}

} // namespace CropSamplerTests

#include "engine/training/TakeDamage.h"

#include <algorithm>
#include <cmath>

namespace velox::engine
{

namespace
{

constexpr double LeastShare = 0.25; // of the phrase; half of the part may lie outside of it
constexpr double MostShare = 0.6;
constexpr double SilenceChance = 0.5;

float Loudness(std::span<const float> samples)
{
    double sum = 1e-12;
    for (const float sample : samples)
    {
        sum += static_cast<double>(sample) * static_cast<double>(sample);
    }
    return static_cast<float>(std::sqrt(sum / static_cast<double>(std::max<std::size_t>(1, samples.size()))));
}

/// A stretch of a recording drawn by chance; empty where it is too short.
std::span<const float> DrawSpeech(std::span<const std::vector<float>> background, std::size_t length, RandomStream* random)
{
    if (background.empty())
    {
        return {};
    }
    const auto number = static_cast<std::size_t>(random->Integer(0, static_cast<int64_t>(background.size()) - 1));
    const std::vector<float>& recording = background[number];
    if (recording.size() < length)
    {
        return {};
    }
    const auto start = static_cast<std::size_t>(random->Integer(0, static_cast<int64_t>(recording.size() - length)));
    return std::span(recording).subspan(start, length);
}

} // namespace

DamagedTake DamageTake(const PreparedTake& take, std::span<const std::vector<float>> background, RandomStream* random)
{
    const auto phrase = static_cast<double>(take.end - take.begin);
    const double length = phrase * (LeastShare + (MostShare - LeastShare) * random->Uniform());
    const double middle = phrase * random->Uniform();
    DamagedTake damaged{take.samples, 0, 0};
    damaged.begin = take.begin + static_cast<std::size_t>(std::max(0.0, middle - length / 2.0));
    damaged.end = take.begin + static_cast<std::size_t>(std::min(phrase, middle + length / 2.0));

    const std::size_t first = std::min(damaged.begin * FrameSize, damaged.samples.size());
    const std::size_t last = std::min(damaged.end * FrameSize, damaged.samples.size());
    const auto part = std::span(damaged.samples).subspan(first, last - first);
    std::ranges::fill(part, 0.0F);
    if (random->Uniform() >= SilenceChance)
    {
        const std::span<const float> other = DrawSpeech(background, part.size(), random);
        const float gain = Loudness(take.PhraseSamples()) / Loudness(other);
        std::ranges::transform(other, part.begin(), [gain](float sample) { return std::clamp(gain * sample, -1.0F, 1.0F); });
    }
    return damaged;
}

std::vector<DamagedCopy> DamagedCopies(const PreparedTake& take, std::size_t number,
                                       std::span<const std::vector<float>> background, uint64_t seed)
{
    constexpr std::size_t PerTake = 6;
    RandomStream random(seed * 9000011U + number);
    std::vector<DamagedCopy> copies;
    while (copies.size() < PerTake)
    {
        const bool clean = copies.empty();
        copies.push_back(
            {DamageTake(take, background, &random), clean ? AugmentationPlan{} : DrawPlan(TrainingRanges, background, &random)});
    }
    return copies;
}

} // namespace velox::engine

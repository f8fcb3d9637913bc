#include "engine/training/TakeDamage.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace velox::engine
{

namespace
{

constexpr double LeastShare = 0.08;
constexpr double MostShare = 0.35;
constexpr double CutChance = 0.5;

float Loudness(std::span<const float> samples)
{
    double sum = 1e-12;
    for (const float sample : samples)
    {
        sum += static_cast<double>(sample) * static_cast<double>(sample);
    }
    return static_cast<float>(std::sqrt(sum / static_cast<double>(std::max<std::size_t>(1, samples.size()))));
}

} // namespace

std::vector<float> DamageTake(std::span<const float> phrase, std::span<const std::vector<float>> background, RandomStream* random)
{
    const double share = LeastShare + (MostShare - LeastShare) * random->Uniform();
    const auto length = static_cast<std::size_t>(share * static_cast<double>(phrase.size()));
    const auto start = static_cast<std::size_t>(random->Integer(0, static_cast<int64_t>(phrase.size() - length)));

    std::vector<float> damaged(phrase.begin(), phrase.end());
    const auto first = damaged.begin() + static_cast<std::ptrdiff_t>(start);
    const auto last = first + static_cast<std::ptrdiff_t>(length);
    const bool cut = random->Uniform() < CutChance;
    const std::size_t recording =
        background.empty() ? 0 : static_cast<std::size_t>(random->Integer(0, static_cast<int64_t>(background.size()) - 1));
    if (cut || background.empty() || background[recording].size() <= length)
    {
        damaged.erase(first, last);
        return damaged;
    }

    const std::vector<float>& other = background[recording];
    const auto from = static_cast<std::size_t>(random->Integer(0, static_cast<int64_t>(other.size() - length)));
    const auto piece = std::span(other).subspan(from, length);
    const float gain = Loudness(phrase) / Loudness(piece);
    std::transform(piece.begin(), piece.end(), first, [gain](float sample) { return std::clamp(gain * sample, -1.0F, 1.0F); });
    return damaged;
}

} // namespace velox::engine

#include "engine/enrollment/TakeAgreement.h"

#include "engine/listening/SpeakerRatio.h"

#include <algorithm>

namespace velox::engine
{

namespace
{

/// How far one take lies below the one most like the others, where it is of another voice.
constexpr float LeastOddness = 0.5F;
/// How far on everybody's side takes lie at most that everybody was learned from.
constexpr float MostEverybodyness = -0.5F;

} // namespace

std::vector<float> RatiosToOthers(const GenericSpeakers& generic, std::span<const PhraseFrames> takes)
{
    std::vector<float> ratios;
    for (std::size_t i = 0; i < takes.size() && takes.size() > 1; ++i)
    {
        std::vector<PhraseFrames> others(takes.begin(), takes.end());
        others.erase(others.begin() + static_cast<std::ptrdiff_t>(i));
        ratios.push_back(SpeakerRatio(TrainSpeaker(generic, others), takes[i].frames, takes[i].counts));
    }
    return ratios;
}

Eigen::MatrixXf PairRatios(const GenericSpeakers& generic, std::span<const PhraseFrames> takes)
{
    const auto count = static_cast<Eigen::Index>(takes.size());
    Eigen::MatrixXf ratios = Eigen::MatrixXf::Zero(count, count);
    for (Eigen::Index i = 0; i < count; ++i)
    {
        const SpeakerModel user = TrainSpeaker(generic, takes.subspan(static_cast<std::size_t>(i), 1));
        for (Eigen::Index j = 0; j < count; ++j)
        {
            const PhraseFrames& take = takes[static_cast<std::size_t>(j)];
            ratios(i, j) = i == j ? 0.0F : SpeakerRatio(user, take.frames, take.counts);
        }
    }
    return 0.5F * (ratios + ratios.transpose());
}

std::optional<std::size_t> UnlikeInVoice(const GenericSpeakers& generic, std::span<const PhraseFrames> takes)
{
    const std::vector<float> ratios = RatiosToOthers(generic, takes);
    const auto lowest = std::min_element(ratios.begin(), ratios.end());
    if (lowest == ratios.end() || *lowest >= 0.0F)
    {
        return std::nullopt;
    }
    const float highest = *std::max_element(ratios.begin(), ratios.end());
    const bool oddOneOut = highest - *lowest > LeastOddness;
    if (!oddOneOut && *lowest > MostEverybodyness)
    {
        return std::nullopt;
    }
    return static_cast<std::size_t>(lowest - ratios.begin());
}

std::optional<std::size_t> UnlikeInLevel(std::span<const double> levels)
{
    const auto [quietest, loudest] = std::minmax_element(levels.begin(), levels.end());
    if (levels.empty() || *loudest - *quietest <= MostLevelDifference)
    {
        return std::nullopt;
    }
    std::vector<double> sorted(levels.begin(), levels.end());
    const auto middle = sorted.begin() + static_cast<std::ptrdiff_t>(sorted.size() / 2);
    std::nth_element(sorted.begin(), middle, sorted.end());
    return static_cast<std::size_t>((*loudest - *middle > *middle - *quietest ? loudest : quietest) - levels.begin());
}

} // namespace velox::engine

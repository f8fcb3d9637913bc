#include "engine/enrollment/TakeAgreement.h"

#include "engine/listening/SpeakerRatio.h"

#include <algorithm>

namespace velox::engine
{

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

bool VoicesAgree(const GenericSpeakers& generic, std::span<const PhraseFrames> takes)
{
    return std::ranges::none_of(RatiosToOthers(generic, takes), [](float ratio) { return ratio < 0.0F; });
}

bool LevelsAgree(std::span<const double> levels)
{
    const auto [quietest, loudest] = std::minmax_element(levels.begin(), levels.end());
    return levels.empty() || *loudest - *quietest <= MostLevelDifference;
}

} // namespace velox::engine

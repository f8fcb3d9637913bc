#include "engine/models/SpeakerModel.h"

#include <algorithm>

namespace velox::engine
{

namespace
{

/// Adapts each prior to the frames that the takes have in its state.
template <typename PriorOf>
std::vector<GaussianMixture> AdaptStates(std::size_t states, PriorOf priorOf, std::span<const PhraseFrames> takes,
                                         float relevance)
{
    std::vector<MixtureStatistics> statistics;
    for (std::size_t s = 0; s < states; ++s)
    {
        statistics.push_back(MixtureStatistics::Empty(priorOf(s)));
    }
    for (const PhraseFrames& take : takes)
    {
        Eigen::Index start = 0;
        for (std::size_t s = 0; s < states; ++s)
        {
            const auto frames = take.frames.middleCols(start, take.counts[s]);
            MixtureStatistics own = MixtureStatistics::Empty(priorOf(s));
            own.Add(frames, priorOf(s).Posteriors(frames));
            own.Scale(take.share);
            statistics[s].counts += own.counts;
            statistics[s].sums += own.sums;
            start += take.counts[s];
        }
    }

    std::vector<GaussianMixture> adapted;
    for (std::size_t s = 0; s < states; ++s)
    {
        adapted.push_back(AdaptMixture(priorOf(s), statistics[s], relevance));
    }
    return adapted;
}

} // namespace

float SpeakerModel::LogRatio(const Eigen::Ref<const Eigen::MatrixXf>& frames, std::span<const int32_t> counts) const
{
    float sum = 0.0F;
    Eigen::Index frame = 0;
    for (std::size_t s = 0; s < user.size(); ++s)
    {
        float stateSum = 0.0F;
        for (const Eigen::Index end = frame + counts[s]; frame < end; ++frame)
        {
            const float ratio = user[s].LogLikelihood(frames.col(frame)) - generic[s].LogLikelihood(frames.col(frame));
            stateSum += std::clamp(ratio, -MostRatio, MostRatio);
        }
        sum += stateSum / static_cast<float>(counts[s]);
    }
    return sum / static_cast<float>(user.size());
}

GenericSpeakers TrainGenericSpeakers(const GaussianMixture& background, std::span<const PhraseFrames> takes, std::size_t states)
{
    const auto prior = [&](std::size_t) -> const GaussianMixture& {
        return background;
    };
    return {AdaptStates(states, prior, takes, GenericSpeakers::Relevance)};
}

SpeakerModel TrainSpeaker(const GenericSpeakers& generic, std::span<const PhraseFrames> takes)
{
    const auto prior = [&](std::size_t state) -> const GaussianMixture& {
        return generic.states[state];
    };
    return {generic.states, AdaptStates(generic.states.size(), prior, takes, SpeakerModel::Relevance), 0.0F};
}

} // namespace velox::engine

#include "engine/enrollment/SpeakerAdaptation.h"

namespace velox::engine
{

namespace
{

/// Frames that a prior component counts as when a state's generic mixture is adapted.
constexpr float GenericRelevance = 16.0F;
/// Frames that a generic component counts as when the user's mixtures are adapted.
constexpr float UserRelevance = 4.0F;

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

GenericSpeakers TrainGenericSpeakers(const GaussianMixture& background, std::span<const PhraseFrames> takes, std::size_t states)
{
    const auto prior = [&](std::size_t) -> const GaussianMixture& {
        return background;
    };
    return {AdaptStates(states, prior, takes, GenericRelevance)};
}

SpeakerModel TrainSpeaker(const GenericSpeakers& generic, std::span<const PhraseFrames> takes)
{
    const auto prior = [&](std::size_t state) -> const GaussianMixture& {
        return generic.states[state];
    };
    return {generic.states, AdaptStates(generic.states.size(), prior, takes, UserRelevance), 0.0F};
}

} // namespace velox::engine

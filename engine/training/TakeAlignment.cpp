#include "engine/training/TakeAlignment.h"

#include "engine/sound/Cepstrum.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace velox::engine
{

namespace
{

constexpr Eigen::Index MostComponents = 128;
constexpr Eigen::Index FramesPerComponent = 20;

GaussianMixture TrainAlignmentMixture(const std::vector<PreparedTake>& takes, uint64_t seed)
{
    std::vector<Eigen::MatrixXf> parts;
    parts.reserve(takes.size());
    for (const PreparedTake& take : takes)
    {
        parts.push_back(UtteranceCepstra(take.PhraseLogMel()));
    }
    const Eigen::MatrixXf all = SideBySide(parts);
    MixtureTraining training;
    training.components = std::clamp<Eigen::Index>(all.cols() / FramesPerComponent, 1, MostComponents);
    training.seed = seed;
    return TrainMixture(all, training);
}

} // namespace

PhraseAlignment AlignPreparedTakes(const std::vector<PreparedTake>& takes, uint64_t seed)
{
    std::vector<std::vector<MelFrame>> phrases;
    std::vector<std::size_t> lengths;
    for (const PreparedTake& take : takes)
    {
        phrases.push_back(take.PhraseLogMel());
        lengths.push_back(phrases.back().size());
    }
    auto found = AlignTakes(phrases, StateCount(lengths), TrainAlignmentMixture(takes, seed));
    if (!found)
    {
        throw std::invalid_argument("every take of the phrase is too short");
    }
    return std::move(*found);
}

StateModel StatesOf(const PhraseAlignment& alignment)
{
    StateModel states;
    for (const float share : alignment.shares)
    {
        states.logPrior.push_back(std::log(0.5F * std::max(share, 1e-3F)));
    }
    states.logPrior.push_back(std::log(0.5F));
    states.meanDuration = alignment.meanDurations;
    return states;
}

} // namespace velox::engine

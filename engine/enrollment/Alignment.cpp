#include "engine/enrollment/Alignment.h"

#include "engine/sound/Cepstrum.h"
#include "engine/sound/FrontEnd.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace velox::engine
{

namespace
{

constexpr int Rounds = 5;
constexpr float Relevance = 16.0F;

/// A take with what stays the same from round to round.
struct TakeFrames
{
    std::size_t number = 0;
    Eigen::MatrixXf cepstra;    ///< CepstralFrameSize x frames
    Eigen::MatrixXf posteriors; ///< components x frames
    std::vector<int> labels;
};

std::vector<int> EqualSplit(std::size_t frames, std::size_t states)
{
    std::vector<int> labels(frames);
    for (std::size_t t = 0; t < frames; ++t)
    {
        labels[t] = static_cast<int>(t * states / frames);
    }
    return labels;
}

TakeFrames Prepare(std::size_t number, std::span<const MelFrame> take, std::size_t states, const GaussianMixture& mixture)
{
    Eigen::MatrixXf cepstra = UtteranceCepstra(take);
    Eigen::MatrixXf posteriors = mixture.Posteriors(cepstra);
    return {number, std::move(cepstra), std::move(posteriors), EqualSplit(take.size(), states)};
}

std::vector<GaussianMixture> AdaptToStates(const std::vector<TakeFrames>& takes, std::size_t states,
                                           const GaussianMixture& mixture)
{
    std::vector<MixtureStatistics> statistics(states, MixtureStatistics::Empty(mixture));
    for (const TakeFrames& take : takes)
    {
        AddToStates(take.labels, take.cepstra, take.posteriors, &statistics);
    }
    std::vector<GaussianMixture> adapted;
    adapted.reserve(states);
    for (const MixtureStatistics& state : statistics)
    {
        adapted.push_back(AdaptMixture(mixture, state, Relevance));
    }
    return adapted;
}

void Relabel(const std::vector<GaussianMixture>& stateMixtures, TakeFrames* take)
{
    Eigen::MatrixXf logLikelihoods(static_cast<Eigen::Index>(stateMixtures.size()), take->cepstra.cols());
    for (std::size_t s = 0; s < stateMixtures.size(); ++s)
    {
        logLikelihoods.row(static_cast<Eigen::Index>(s)) = stateMixtures[s].LogLikelihoods(take->cepstra).transpose();
    }
    take->labels = BestStates(logLikelihoods);
}

void CountDurations(std::size_t takes, PhraseAlignment* alignment)
{
    std::vector<std::size_t> counts(alignment->states, 0);
    std::size_t frames = 0;
    for (const std::vector<int>& labels : alignment->labels)
    {
        for (const int label : labels)
        {
            ++counts[static_cast<std::size_t>(label)];
        }
        frames += labels.size();
    }
    for (const std::size_t count : counts)
    {
        alignment->meanDurations.push_back(static_cast<float>(count) / static_cast<float>(takes));
        alignment->shares.push_back(static_cast<float>(count) / static_cast<float>(frames));
    }
}

} // namespace

std::size_t StateCount(std::vector<std::size_t> takeFrames)
{
    constexpr std::size_t FramesPerState = 5;
    const auto middle = takeFrames.begin() + static_cast<std::ptrdiff_t>(takeFrames.size() / 2);
    std::nth_element(takeFrames.begin(), middle, takeFrames.end());
    return std::max<std::size_t>(1, *middle / FramesPerState);
}

std::optional<PhraseAlignment> AlignTakes(std::span<const std::vector<MelFrame>> takes, std::size_t states,
                                          const GaussianMixture& mixture)
{
    PhraseAlignment alignment;
    alignment.states = states;
    std::vector<TakeFrames> usable;
    for (std::size_t i = 0; i < takes.size(); ++i)
    {
        if (takes[i].size() < LeastStateFrames * states)
        {
            alignment.tooShort.push_back(i);
        }
        else
        {
            usable.push_back(Prepare(i, takes[i], states, mixture));
        }
    }
    if (usable.empty())
    {
        return std::nullopt;
    }

    for (int round = 0; round < Rounds; ++round)
    {
        const std::vector<GaussianMixture> stateMixtures = AdaptToStates(usable, states, mixture);
        for (TakeFrames& take : usable)
        {
            Relabel(stateMixtures, &take);
        }
    }

    alignment.labels.resize(takes.size());
    for (TakeFrames& take : usable)
    {
        alignment.labels[take.number] = std::move(take.labels);
    }
    CountDurations(usable.size(), &alignment);
    return alignment;
}

std::vector<int> BestStates(const Eigen::MatrixXf& logLikelihoods)
{
    constexpr double Impossible = -std::numeric_limits<double>::infinity();
    constexpr auto Least = static_cast<Eigen::Index>(LeastStateFrames);
    const Eigen::Index states = logLikelihoods.rows();
    const Eigen::Index frames = logLikelihoods.cols();

    // total(t): best total of the first t frames that ends with the state in hand; entries: where that state's frames begin.
    Eigen::VectorXd total = Eigen::VectorXd::Constant(frames + 1, Impossible);
    total(0) = 0.0;
    Eigen::MatrixXi entries(states, frames + 1);
    for (Eigen::Index s = 0; s < states; ++s)
    {
        Eigen::VectorXd sums = Eigen::VectorXd::Zero(frames + 1);
        for (Eigen::Index t = 0; t < frames; ++t)
        {
            sums(t + 1) = sums(t) + static_cast<double>(logLikelihoods(s, t));
        }
        Eigen::VectorXd next = Eigen::VectorXd::Constant(frames + 1, Impossible);
        double best = Impossible;
        Eigen::Index entry = 0;
        for (Eigen::Index t = Least; t <= frames; ++t)
        {
            if (const double entered = total(t - Least) - sums(t - Least); entered > best)
            {
                best = entered;
                entry = t - Least;
            }
            next(t) = best + sums(t);
            entries(s, t) = static_cast<int>(entry);
        }
        total = next;
    }

    std::vector<int> labels(static_cast<std::size_t>(frames));
    Eigen::Index end = frames;
    for (Eigen::Index s = states; s-- > 0;)
    {
        const Eigen::Index begin = entries(s, end);
        std::fill(labels.begin() + begin, labels.begin() + end, static_cast<int>(s));
        end = begin;
    }
    return labels;
}

void AddToStates(std::span<const int> labels, const Eigen::MatrixXf& frames, const Eigen::MatrixXf& posteriors,
                 std::vector<MixtureStatistics>* statistics)
{
    for (auto begin = labels.begin(); begin != labels.end();)
    {
        const auto end = std::upper_bound(begin, labels.end(), *begin);
        const Eigen::Index first = begin - labels.begin();
        const Eigen::Index count = end - begin;
        (*statistics)[static_cast<std::size_t>(*begin)].Add(frames.middleCols(first, count), posteriors.middleCols(first, count));
        begin = end;
    }
}

std::vector<int> CarryLabels(std::span<const int> labels, double speed, std::size_t frames, std::size_t offset)
{
    // Middle of the window of the front end's first frame, in frames from the first sample.
    constexpr double FirstMiddle =
        static_cast<double>(FrontEnd::FirstFrame) - static_cast<double>(WindowSize) / 2.0 / static_cast<double>(FrameSize);
    const double firstMiddle = FirstMiddle + static_cast<double>(offset) / static_cast<double>(FrameSize);
    const auto last = static_cast<double>(labels.size() - 1);
    std::vector<int> carried(frames);
    for (std::size_t i = 0; i < frames; ++i)
    {
        const double position = speed * (static_cast<double>(i) + firstMiddle) - FirstMiddle;
        carried[i] = labels[static_cast<std::size_t>(std::lround(std::clamp(position, 0.0, last)))];
    }
    return carried;
}

} // namespace velox::engine

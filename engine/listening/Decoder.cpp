#include "engine/listening/Decoder.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace velox::engine
{

namespace
{

constexpr float Impossible = -1e30F;

/// A state's mean duration cannot be told apart from its least one below this.
constexpr float LeastMeanDuration = 3.3F;

} // namespace

void PhrasePath::Add(std::size_t state, float ratio)
{
    ++counts[state];
    const float fit = (recent[0] + recent[1] + ratio) / 3.0F;
    fits[state] = counts[state] <= 3 ? fit : std::max(fits[state], fit);
    recent = {recent[1], ratio};
}

Decoder::Decoder(const StateModel& model) : logPrior(model.logPrior)
{
    const std::size_t states = model.States();
    for (const float duration : model.meanDuration)
    {
        const float leave = 1.0F / (std::max(duration, LeastMeanDuration) - static_cast<float>(SubStates - 1));
        logLeave.push_back(std::log(leave));
        logStay.push_back(std::log1p(-leave));
    }
    const float meanFrames = std::accumulate(model.meanDuration.begin(), model.meanDuration.end(), 0.0F);
    framesToStay = std::lround(LongestPhrase * meanFrames);
    totals.assign(states * SubStates, Impossible);
    paths.assign(states * SubStates, {0, std::vector<float>(states, 0.0F), std::vector<int32_t>(states, 0), {}});
    ratios.assign(states, 0.0F);
}

bool Decoder::Push(const float* logPosteriors)
{
    const std::size_t states = ratios.size();
    const float background = logPosteriors[states] - logPrior[states];
    for (std::size_t s = 0; s < states; ++s)
    {
        ratios[s] = std::clamp(logPosteriors[s] - logPrior[s] - background, LeastRatio, MostRatio);
    }

    // From the last sub-state to the first: each one needs the former totals of itself and of the one before.
    for (std::size_t k = totals.size(); k-- > 0;)
    {
        const std::size_t s = k / SubStates;
        const std::size_t sub = k % SubStates;
        const bool first = k == 0;
        PhrasePath& path = paths[k];
        const bool mayStay = sub == SubStates - 1 && frames - path.startFrame < framesToStay;
        const float stay = mayStay ? totals[k] + logStay[s] : Impossible;
        const float advance = first ? 0.0F : totals[k - 1] + (sub == 0 ? logLeave[s - 1] : 0.0F);
        if (first)
        {
            path.startFrame = frames;
            std::fill(path.counts.begin(), path.counts.end(), 0);
        }
        else if (advance >= stay)
        {
            const PhrasePath& before = paths[k - 1];
            path.startFrame = before.startFrame;
            path.recent = before.recent;
            std::copy(before.fits.begin(), before.fits.begin() + static_cast<std::ptrdiff_t>(s) + 1, path.fits.begin());
            std::copy(before.counts.begin(), before.counts.begin() + static_cast<std::ptrdiff_t>(s) + 1, path.counts.begin());
        }
        totals[k] = std::max(Impossible, std::max(stay, advance) + ratios[s]);
        path.Add(s, ratios[s]);
    }
    ++frames;
    return totals.back() > Impossible / 2.0F;
}

float SoftMinimumScore(const PhrasePath& path)
{
    float sum = 0.0F;
    for (const float fit : path.fits)
    {
        sum += std::exp(-fit);
    }
    return -std::log(sum / static_cast<float>(path.fits.size()));
}

} // namespace velox::engine

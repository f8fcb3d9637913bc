#include "engine/listening/PathDescription.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <span>

namespace velox::engine
{

namespace
{

float Mean(const float* values, std::size_t count)
{
    return std::accumulate(values, values + count, 0.0F) / static_cast<float>(count);
}

} // namespace

PathDescription DescribePath(const PhrasePath& path, const StateModel& states)
{
    const std::size_t count = states.States();
    std::array<float, StateModel::MostStates> means{};
    std::array<float, StateModel::MostStates> stretches{};
    for (std::size_t s = 0; s < count; ++s)
    {
        means[s] = path.StateMean(s);
        stretches[s] = std::log(static_cast<float>(path.counts[s]) / states.meanDuration[s]);
    }
    const float tempo = Mean(stretches.data(), count);
    float largestError = 0.0F;
    float errorSum = 0.0F;
    for (const float stretch : std::span(stretches).first(count))
    {
        const float error = (stretch - tempo) * (stretch - tempo);
        largestError = std::max(largestError, error);
        errorSum += error;
    }
    std::array<float, StateModel::MostStates> sorted{};
    std::copy_n(means.begin(), count, sorted.begin());
    std::sort(sorted.begin(), sorted.begin() + static_cast<std::ptrdiff_t>(count));
    const float median = sorted[count / 2];
    const std::size_t three = std::min<std::size_t>(3, count);
    float lowestThree = Mean(means.data(), three);
    for (std::size_t s = 1; s + three <= count; ++s)
    {
        lowestThree = std::min(lowestThree, Mean(means.data() + s, three));
    }

    PathDescription features;
    features << sorted[0], Mean(sorted.data(), std::min<std::size_t>(2, count)),
        Mean(sorted.data(), std::min<std::size_t>(4, count)), median, lowestThree, lowestThree - median,
        (path.lowest[0] + path.lowest[1]) / 2.0F, largestError, errorSum / static_cast<float>(count), Mean(means.data(), three),
        Mean(means.data() + (count - three), three), SoftMinimumScore(path);
    return features;
}

float JudgePath(const PhraseModel& model, const PhrasePath& path)
{
    return model.tail.FactorsBelowHalf(model.judge.LogOdds(DescribePath(path, model.states)));
}

} // namespace velox::engine

#include "engine/listening/PathDescription.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <span>

namespace velox::engine
{

namespace
{

float Mean(std::span<const float> values)
{
    return std::accumulate(values.begin(), values.end(), 0.0F) / static_cast<float>(values.size());
}

} // namespace

PathDescription DescribePath(const PhrasePath& path)
{
    const std::span fits(path.fits);
    std::array<float, StateModel::MostStates> sorted{};
    std::ranges::copy(fits, sorted.begin());
    std::sort(sorted.begin(), sorted.begin() + std::ssize(fits));
    const float median = sorted[fits.size() / 2];
    const auto meanOfLowest = [&](std::size_t count) {
        return Mean(std::span(sorted).first(std::min(count, fits.size())));
    };
    const std::size_t three = std::min<std::size_t>(3, fits.size());
    float lowestThree = Mean(fits.first(three));
    for (std::size_t s = 1; s + three <= fits.size(); ++s)
    {
        lowestThree = std::min(lowestThree, Mean(fits.subspan(s, three)));
    }

    PathDescription features;
    features << sorted[0], meanOfLowest(2), meanOfLowest(4), median, lowestThree, lowestThree - median, Mean(fits.first(three)),
        Mean(fits.last(three)), SoftMinimumScore(path);
    return features;
}

float JudgePath(const PhraseModel& model, const PhrasePath& path)
{
    return model.tail.FactorsBelowHalf(model.judge.LogOdds(DescribePath(path)));
}

} // namespace velox::engine

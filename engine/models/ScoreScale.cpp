#include "engine/models/ScoreScale.h"

#include <algorithm>
#include <cstddef>
#include <numbers>

namespace velox::engine
{

BackgroundTail BackgroundTail::Fit(std::span<float> blockMaxima)
{
    if (blockMaxima.empty())
    {
        return {};
    }
    const auto rank = static_cast<std::size_t>(static_cast<double>(blockMaxima.size() - 1) * (1.0 - ExceedingShare));
    const auto position = blockMaxima.begin() + static_cast<std::ptrdiff_t>(rank);
    std::nth_element(blockMaxima.begin(), position, blockMaxima.end());
    // Of exponential excesses half lie above the slope times ln 2; their mean would follow a few near phrases in the background.
    const auto above = blockMaxima.subspan(rank + 1);
    if (above.empty())
    {
        return {*position, 1.0F};
    }
    const auto middle = above.begin() + static_cast<std::ptrdiff_t>(above.size() / 2);
    std::nth_element(above.begin(), middle, above.end());
    return {*position, std::max((*middle - *position) / std::numbers::ln2_v<float>, LeastSlope)};
}

} // namespace velox::engine

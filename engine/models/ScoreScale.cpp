#include "engine/models/ScoreScale.h"

#include <algorithm>
#include <cstddef>

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
    double excess = 0.0;
    for (const float maximum : blockMaxima.subspan(rank + 1))
    {
        excess += static_cast<double>(maximum) - static_cast<double>(*position);
    }
    const auto above = static_cast<double>(blockMaxima.size() - rank - 1);
    return {*position, above > 0.0 ? std::max(static_cast<float>(excess / above), LeastSlope) : 1.0F};
}

} // namespace velox::engine

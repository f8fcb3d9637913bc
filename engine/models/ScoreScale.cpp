#include "engine/models/ScoreScale.h"

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
    return {*position};
}

} // namespace velox::engine

#pragma once

#include <cstddef>
#include <vector>

namespace velox::engine
{

/// What the decoder knows of a phrase besides the network.
struct StateModel
{
    static constexpr std::size_t MostStates = 128;

    std::vector<float> logPrior;     ///< ln of half the share of each state, then ln 0.5 for the background
    std::vector<float> meanDuration; ///< frames in each state

    std::size_t States() const
    {
        return meanDuration.size();
    }
};

} // namespace velox::engine

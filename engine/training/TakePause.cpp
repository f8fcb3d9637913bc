#include "engine/training/TakePause.h"

#include <algorithm>
#include <numeric>

namespace velox::engine
{

namespace
{

constexpr double PauseChance = 0.2;
constexpr int64_t FewestFrames = 5;
constexpr int64_t MostFrames = 35;

float Energy(const MelFrame& frame)
{
    return std::accumulate(frame.begin(), frame.end(), 0.0F);
}

} // namespace

std::optional<Pause> DrawPause(const PreparedTake& take, RandomStream* random)
{
    const std::size_t quarter = (take.end - take.begin) / 4;
    const std::span<const MelFrame> inner =
        std::span(take.logMel).subspan(take.begin + quarter, take.end - take.begin - 2 * quarter);
    if (inner.empty() || random->Uniform() >= PauseChance)
    {
        return std::nullopt;
    }
    const auto quietest = std::ranges::min_element(inner, {}, Energy);
    const auto number = static_cast<std::size_t>(quietest - inner.begin()) + take.begin + quarter;
    return Pause{number + 1, static_cast<std::size_t>(random->Integer(FewestFrames, MostFrames))}; // within the frame's window
}

std::vector<int> LabelsWithPause(const std::vector<int>& labels, const Pause& pause)
{
    std::vector<int> all = labels;
    all.insert(all.begin() + static_cast<std::ptrdiff_t>(pause.start), pause.frames, labels[pause.start - 1]);
    return all;
}

} // namespace velox::engine

#include "evaluation/TimeStretch.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <numeric>

namespace velox::evaluation
{

namespace
{

constexpr std::size_t Window = 480; // 30 ms
constexpr std::size_t Hop = Window / 2;
constexpr std::size_t Search = 120;

/// The start within Search of `middle` whose window is most like the one that starts at `wanted`.
std::size_t BestStart(std::span<const float> recording, std::size_t wanted, std::size_t middle)
{
    const std::size_t first = middle > Search ? middle - Search : 0;
    const std::size_t last = std::min(middle + Search, recording.size() - Window);
    std::size_t best = std::min(middle, last);
    float bestProduct = -1e30F;
    for (std::size_t start = first; start <= last; ++start)
    {
        const auto a = recording.begin() + static_cast<std::ptrdiff_t>(start);
        const auto b = recording.begin() + static_cast<std::ptrdiff_t>(wanted);
        const float product = std::inner_product(a, a + Window, b, 0.0F);
        if (product > bestProduct)
        {
            bestProduct = product;
            best = start;
        }
    }
    return best;
}

} // namespace

std::vector<float> ChangeTempo(std::span<const float> recording, double tempo)
{
    std::vector<float> changed;
    std::size_t wanted = 0;
    for (std::size_t out = 0;; out += Hop)
    {
        const auto middle = static_cast<std::size_t>(static_cast<double>(out) * tempo);
        if (middle + Window > recording.size() || wanted + Window > recording.size())
        {
            return changed;
        }
        const std::size_t start = BestStart(recording, wanted, middle);
        changed.resize(out + Window, 0.0F);
        for (std::size_t n = 0; n < Window; ++n)
        {
            const double phase = 2.0 * std::numbers::pi * (static_cast<double>(n) + 0.5) / Window;
            changed[out + n] += static_cast<float>(0.5 - 0.5 * std::cos(phase)) * recording[start + n];
        }
        wanted = start + Hop;
    }
}

} // namespace velox::evaluation

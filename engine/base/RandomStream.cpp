#include "engine/base/RandomStream.h"

#include <cmath>
#include <numbers>

namespace velox::engine
{

// Neighbouring seeds start far apart on the one sequence that all streams share.
RandomStream::RandomStream(uint64_t seed) : state(Mix(seed))
{
}

double RandomStream::Uniform()
{
    return static_cast<double>(Bits() >> 11U) * 0x1p-53;
}

int64_t RandomStream::Integer(int64_t low, int64_t high)
{
    return low + static_cast<int64_t>(Uniform() * static_cast<double>(high - low + 1));
}

double RandomStream::Normal()
{
    const double radius = std::sqrt(-2.0 * std::log1p(-Uniform()));
    return radius * std::cos(2.0 * std::numbers::pi * Uniform());
}

} // namespace velox::engine

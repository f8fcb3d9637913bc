#include "engine/training/OneCycleSchedule.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace velox::engine
{

namespace
{

double AlongHalfCosine(double from, double to, double share)
{
    return to + (from - to) * 0.5 * (1.0 + std::cos(std::numbers::pi * share));
}

} // namespace

double OneCycleSchedule::Rate(int batch) const
{
    const double first = peak / PeakOverFirst;
    const double share = static_cast<double>(batch) / std::max(1, count - 1);
    return share < RisingShare ? AlongHalfCosine(first, peak, share / RisingShare)
                               : AlongHalfCosine(peak, first / FirstOverLast, (share - RisingShare) / (1.0 - RisingShare));
}

} // namespace velox::engine

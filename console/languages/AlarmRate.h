#pragma once

#include <cstdint>

namespace velox::console
{

/// Rates between which the true one lies with a confidence of 95 %, per hour.
struct RateInterval
{
    double least = 0.0;
    double most = 0.0;
};

/// What a count of independent events in some hours tells about their rate: the exact interval of a Poisson count (Garwood,
/// "Fiducial limits for the Poisson distribution", 1936).
RateInterval RateFromCount(int64_t count, double hours);

/// The least count whose interval ends at no more than twice the counted rate.
inline constexpr int64_t CountForTwice = 8;

} // namespace velox::console

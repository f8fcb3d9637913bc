#pragma once

#include <cstdint>

namespace velox::engine
{

/// Rates or shares between which the true one lies with a confidence of 95 %.
struct CountInterval
{
    double least = 0.0;
    double most = 0.0;
};

/// What a count of independent events in some hours tells about their rate per hour: the exact interval of a Poisson count
/// (Garwood, "Fiducial limits for the Poisson distribution", 1936).
CountInterval RateFromCount(int64_t count, double hours);

/// What a count of so many independent trials tells about their share, 0 to 1: the exact interval of a binomial count (Clopper
/// and Pearson, "The use of confidence or fiducial limits illustrated in the case of the binomial", 1934).
CountInterval ShareFromCount(int64_t count, int64_t of);

/// The least count whose interval ends at no more than twice the counted rate.
inline constexpr int64_t CountForTwice = 8;

} // namespace velox::engine

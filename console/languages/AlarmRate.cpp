#include "console/languages/AlarmRate.h"

#include <cmath>

namespace velox::console
{

namespace
{

constexpr double Tail = 0.025; // at either end
constexpr int Halvings = 60;

double LogFactorial(int64_t number)
{
    // What is not safe is the sign, a global that nobody reads.
    return std::lgamma(static_cast<double>(number) + 1.0); // NOLINT(concurrency-mt-unsafe)
}

/// Probability of exactly so many events where `mean` are expected.
double PoissonShare(int64_t events, double mean)
{
    return std::exp(static_cast<double>(events) * std::log(mean) - mean - LogFactorial(events));
}

/// The same for trials that each have the probability `share`.
double BinomialShare(int64_t events, int64_t trials, double share)
{
    const double ways = LogFactorial(trials) - LogFactorial(events) - LogFactorial(trials - events);
    return std::exp(ways + static_cast<double>(events) * std::log(share) +
                    static_cast<double>(trials - events) * std::log1p(-share));
}

/// Where at most `count` events have this probability, which falls from 0 to `most`.
/// @param exactly  probability of a number of events at a place
template <typename Exactly>
double PlaceWhere(int64_t count, double probability, double most, const Exactly& exactly)
{
    double least = 0.0;
    for (int i = 0; i < Halvings; ++i)
    {
        const double middle = (least + most) / 2.0;
        double atMost = 0.0;
        for (int64_t events = 0; events <= count; ++events)
        {
            atMost += exactly(events, middle);
        }
        (atMost > probability ? least : most) = middle;
    }
    return least;
}

} // namespace

RateInterval RateFromCount(int64_t count, double hours)
{
    const double most = 10.0 + 3.0 * static_cast<double>(count);
    return {count == 0 ? 0.0 : PlaceWhere(count - 1, 1.0 - Tail, most, PoissonShare) / hours,
            PlaceWhere(count, Tail, most, PoissonShare) / hours};
}

RateInterval ShareFromCount(int64_t count, int64_t of)
{
    const auto exactly = [of](int64_t events, double share) {
        return BinomialShare(events, of, share);
    };
    return {count == 0 ? 0.0 : PlaceWhere(count - 1, 1.0 - Tail, 1.0, exactly),
            count == of ? 1.0 : PlaceWhere(count, Tail, 1.0, exactly)};
}

} // namespace velox::console

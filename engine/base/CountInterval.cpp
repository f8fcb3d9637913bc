#include "engine/base/CountInterval.h"

#include <cmath>

namespace velox::engine
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

/// The interval of a count, between 0 and `most`.
/// @param logExactly  logarithm of the probability of a number of events at a place
template <typename LogExactly>
CountInterval IntervalOf(int64_t count, double most, const LogExactly& logExactly)
{
    // The chance of so many events or fewer falls from place to place.
    const auto placeWhere = [&](int64_t events, double chance) {
        CountInterval place{0.0, most};
        for (int i = 0; i < Halvings; ++i)
        {
            const double middle = (place.least + place.most) / 2.0;
            double atMost = 0.0;
            for (int64_t number = 0; number <= events; ++number)
            {
                atMost += std::exp(logExactly(number, middle));
            }
            (atMost > chance ? place.least : place.most) = middle;
        }
        return place.least;
    };
    return {count == 0 ? 0.0 : placeWhere(count - 1, 1.0 - Tail), placeWhere(count, Tail)};
}

} // namespace

CountInterval RateFromCount(int64_t count, double hours)
{
    const CountInterval interval =
        IntervalOf(count, 10.0 + 3.0 * static_cast<double>(count), [](int64_t events, double expected) {
            return static_cast<double>(events) * std::log(expected) - expected - LogFactorial(events);
        });
    return {interval.least / hours, interval.most / hours};
}

CountInterval ShareFromCount(int64_t count, int64_t of)
{
    const CountInterval interval = IntervalOf(count, 1.0, [of](int64_t events, double share) {
        return LogFactorial(of) - LogFactorial(events) - LogFactorial(of - events) +
               static_cast<double>(events) * std::log(share) + static_cast<double>(of - events) * std::log1p(-share);
    });
    return {interval.least, count == of ? 1.0 : interval.most};
}

} // namespace velox::engine

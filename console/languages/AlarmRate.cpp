#include "console/languages/AlarmRate.h"

#include <cmath>

namespace velox::console
{

namespace
{

constexpr double Tail = 0.025; // at either end
constexpr int Halvings = 60;

/// Probability of at most this many events where `mean` are expected.
double AtMost(int64_t count, double mean)
{
    double sum = 0.0;
    for (int64_t events = 0; events <= count; ++events)
    {
        const auto number = static_cast<double>(events);
        // What is not safe is the sign, a global that nobody reads.
        const double logFactorial = std::lgamma(number + 1.0); // NOLINT(concurrency-mt-unsafe)
        sum += std::exp(number * std::log(mean) - mean - logFactorial);
    }
    return sum;
}

/// The mean at which at most `count` events have this probability, which falls with the mean.
double MeanWhere(int64_t count, double probability)
{
    double least = 0.0;
    double most = 10.0 + 3.0 * static_cast<double>(count);
    for (int i = 0; i < Halvings; ++i)
    {
        const double middle = (least + most) / 2.0;
        (AtMost(count, middle) > probability ? least : most) = middle;
    }
    return least;
}

} // namespace

RateInterval RateFromCount(int64_t count, double hours)
{
    return {count == 0 ? 0.0 : MeanWhere(count - 1, 1.0 - Tail) / hours, MeanWhere(count, Tail) / hours};
}

} // namespace velox::console

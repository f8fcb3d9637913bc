#include "evaluation/Interval.h"

#include <cmath>
#include <functional>

namespace velox::evaluation
{

namespace
{

constexpr double Tail = 0.025;

/// Where a falling function passes through a value.
double Root(double least, double most, double value, const std::function<double(double)>& falling)
{
    for (int i = 0; i < 60; ++i)
    {
        const double middle = 0.5 * (least + most);
        (falling(middle) > value ? least : most) = middle;
    }
    return 0.5 * (least + most);
}

/// Probability of at most `counted` of `all` cases, each of a probability between 0 and 1.
double AtMost(int counted, int all, double probability)
{
    double sum = 0.0;
    for (int k = 0; k <= counted; ++k)
    {
        sum += std::exp(std::lgamma(all + 1.0) - std::lgamma(k + 1.0) - std::lgamma(all - k + 1.0) + k * std::log(probability) +
                        (all - k) * std::log1p(-probability));
    }
    return sum;
}

/// Probability of at most so many events where `mean` are expected.
double AtMost(int events, double mean)
{
    double sum = 0.0;
    for (int k = 0; k <= events; ++k)
    {
        sum += std::exp(k * std::log(mean) - mean - std::lgamma(k + 1.0));
    }
    return sum;
}

/// Upper end of a share's interval.
double MostShare(int counted, int all)
{
    return counted == all ? 1.0 : Root(0.0, 1.0, Tail, [&](double p) { return AtMost(counted, all, p); });
}

} // namespace

Interval ShareInterval(int counted, int all)
{
    return {100.0 * (1.0 - MostShare(all - counted, all)), 100.0 * MostShare(counted, all)};
}

Interval EventInterval(int events)
{
    const double reach = events + 10.0 * std::sqrt(events + 1.0) + 10.0;
    const auto mean = [reach](int most, double probability) {
        return Root(0.0, reach, probability, [most](double expected) { return AtMost(most, expected); });
    };
    return {events == 0 ? 0.0 : mean(events - 1, 1.0 - Tail), mean(events, Tail)};
}

} // namespace velox::evaluation

#pragma once

namespace velox::evaluation
{

/// Where a true figure lies with a probability of at least 95 %.
struct Interval
{
    double least = 0.0;
    double most = 0.0;
};

/// Of a share in percent (Clopper and Pearson, "The use of confidence or fiducial limits", 1934). None of none: 0 to 100.
/// @param counted  0 to all
Interval ShareInterval(int counted, int all);

/// Of a Poisson process's mean number of events (Garwood, "Fiducial limits for the Poisson distribution", 1936).
Interval EventInterval(int events);

} // namespace velox::evaluation

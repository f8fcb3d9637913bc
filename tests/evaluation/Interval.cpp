#include "evaluation/Interval.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace velox::evaluation;

// Expected values: the tables of Clopper and Pearson and of Garwood, and closed forms.

TEST(Interval, OfAShareIsThatOfClopperAndPearson)
{
    const struct
    {
        int counted;
        int all;
        double least;
        double most;
    } cases[]{{0, 0, 0.0, 100.0},
              {0, 20, 0.0, 100.0 * (1.0 - std::pow(0.025, 0.05))},
              {20, 20, 100.0 * std::pow(0.025, 0.05), 100.0},
              {1, 10, 0.2529, 44.50},
              {5, 10, 18.71, 81.29},
              {30, 1000, 2.033, 4.256}};
    for (const auto& own : cases)
    {
        SCOPED_TRACE(std::to_string(own.counted) + " of " + std::to_string(own.all));
        const Interval interval = ShareInterval(own.counted, own.all);
        EXPECT_NEAR(interval.least, own.least, 0.01);
        EXPECT_NEAR(interval.most, own.most, 0.01);
    }
}

TEST(Interval, OfEventsIsThatOfGarwood)
{
    const struct
    {
        int events;
        double least;
        double most;
    } cases[]{{0, 0.0, 3.689}, {1, 0.0253, 5.572}, {2, 0.2422, 7.225}, {10, 4.795, 18.39}, {100, 81.36, 121.63}};
    for (const auto& own : cases)
    {
        SCOPED_TRACE(own.events);
        const Interval interval = EventInterval(own.events);
        EXPECT_NEAR(interval.least, own.least, 0.01);
        EXPECT_NEAR(interval.most, own.most, 0.01);
    }
}

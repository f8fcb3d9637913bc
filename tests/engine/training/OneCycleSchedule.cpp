#include "engine/training/OneCycleSchedule.h"

#include <gmock/gmock.h>

namespace OneCycleScheduleTests
{

using velox::engine::OneCycleSchedule;

// 101 batches: batch number = per cent of the training.
struct RateCase
{
    const char* description;
    int batch;
    double rate;
};

TEST(OneCycleSchedule, RisesToThePeakAndFallsAlongHalfCosines)
{
    const OneCycleSchedule schedule(1.0, 101);
    const RateCase cases[] = {{"first: the peak over 25", 0, 0.04},
                              {"half of the rise: the mean of first and peak", 15, 0.52},
                              {"peak", 30, 1.0},
                              {"half of the fall: the mean of peak and last", 65, 0.500002},
                              {"last: the first over 10000", 100, 0.000004}};
    for (const RateCase& given : cases)
    {
        SCOPED_TRACE(given.description);
        EXPECT_NEAR(schedule.Rate(given.batch), given.rate, 1e-9);
    }
}

TEST(OneCycleSchedule, IsInProportionToThePeak)
{
    EXPECT_NEAR(OneCycleSchedule(4e-3, 101).Rate(15), 4e-3 * OneCycleSchedule(1.0, 101).Rate(15), 1e-15);
}

TEST(OneCycleSchedule, NeverExceedsThePeak)
{
    const OneCycleSchedule schedule(4e-3, 2500);
    for (int batch = 0; batch < 2500; ++batch)
    {
        ASSERT_LE(schedule.Rate(batch), 4e-3) << batch;
        ASSERT_GT(schedule.Rate(batch), 0.0) << batch;
    }
}

TEST(OneCycleSchedule, ASingleBatchHasTheFirstRate)
{
    EXPECT_NEAR(OneCycleSchedule(1.0, 1).Rate(0), 0.04, 1e-12);
}

} // namespace OneCycleScheduleTests

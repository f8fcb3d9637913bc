#include "tests/support/main/Watchdog.h"

#include <iostream>

// A filter that matches nothing is a failure: a renamed suite must not pass unseen.
int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // The watchdog is a thread.
    // The time is less than what ctest gives a whole suite, the memory several times what the largest test needs.
    Watchdog watchdog({.time = std::chrono::minutes(4), .bytes = 4ULL << 30});
    testing::TestEventListeners& listeners = testing::UnitTest::GetInstance()->listeners();
    listeners.Append(&watchdog);
    const int result = RUN_ALL_TESTS();
    listeners.Release(&watchdog);
    if (testing::UnitTest::GetInstance()->test_to_run_count() == 0)
    {
        std::cerr << "No test was run.\n";
        return 1;
    }
    return result;
}

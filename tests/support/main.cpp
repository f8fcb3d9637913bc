#include <gtest/gtest.h>

#include <iostream>

// A filter that matches nothing is a failure: a renamed suite must not pass unseen.
int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    const int result = RUN_ALL_TESTS();
    if (testing::UnitTest::GetInstance()->test_to_run_count() == 0)
    {
        std::cerr << "No test was run.\n";
        return 1;
    }
    return result;
}

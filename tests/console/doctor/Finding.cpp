#include "console/doctor/Finding.h"

#include <gtest/gtest.h>

using namespace velox::console;

TEST(Finding, FailuresAreASentence)
{
    using enum Operation;
    EXPECT_EQ(FailureSentence({}), "");
    EXPECT_EQ(FailureSentence(FailuresOf({Arming}, 1033)), "Arming fails.");
    EXPECT_EQ(FailureSentence(FailuresOf({Capabilities}, {})), "Capabilities fail.");
    EXPECT_EQ(FailureSentence(FailuresOf({Verification, Training}, 1033)), "Verification and training fail.");
    EXPECT_EQ(FailureSentence(FailuresOf({Verification, Training, Arming}, {})), "Verification, training and arming fail.");
}

TEST(Finding, OperationThatFailsForSeveralLanguagesIsNamedOnce)
{
    EXPECT_EQ(FailureSentence({{Operation::Arming, 1033}, {Operation::Arming, 1040}}), "Arming fails.");
}

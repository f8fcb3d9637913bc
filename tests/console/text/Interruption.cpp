#include "console/text/Interruption.h"

#include "console/text/CommandFailure.h"

#include <gtest/gtest.h>

#include <thread>

namespace InterruptionTests
{

using namespace velox::console;

TEST(Interruption, NobodyAskedAtFirst)
{
    EXPECT_FALSE(InterruptionRequested());
    EXPECT_NO_THROW(StopIfInterrupted());
}

TEST(Interruption, ARequestOfAnotherThreadStopsTheCommandUntilItIsForgotten)
{
    std::thread(RequestInterruption).join();
    EXPECT_TRUE(InterruptionRequested());
    for (int i = 0; i < 2; ++i)
    {
        try
        {
            StopIfInterrupted();
            ADD_FAILURE();
        }
        catch (const CommandFailure& failure)
        {
            EXPECT_EQ(failure.exitCode, ExitCode::Interrupted);
            EXPECT_STREQ(failure.what(), "Interrupted. Nothing was written.");
        }
    }
    ForgetInterruption();
    EXPECT_NO_THROW(StopIfInterrupted());
}

} // namespace InterruptionTests

#pragma once

#include "tests/oemadapter/support/OemAdapterTest.h"
#include "tests/support/FaultInjector.h"

#include <optional>

/// Does something once for each fallible call that it makes, with this call failing.
class FaultSweep : public OemAdapterTest
{
protected:
    /// Another language was armed before, so that the next one is recorded.
    static void ForgetLanguage()
    {
        const FaultPause pause;
        WriteNumber(HKEY_CURRENT_USER, UserKey, u"LastLanguage", Italian);
    }

    /// @return the number of fallible calls
    uint64_t Sweep(const std::function<HRESULT()>& operation)
    {
        EXPECT_EQ(operation(), S_OK); // What is done only once is done then.
        uint64_t count = 0;
        {
            const FaultPlan plan = FaultPlan::Count();
            EXPECT_EQ(operation(), S_OK);
            count = plan.Calls();
        }
        const std::size_t before = LivePlatformObjects();
        for (uint64_t call = 1; call <= count; ++call)
        {
            SCOPED_TRACE("call " + std::to_string(call) + " of " + std::to_string(count));
            HRESULT result = S_OK;
            uint64_t callsMade = 0;
            {
                const FaultPlan plan = FaultPlan::Nth(call);
                result = operation();
                callsMade = plan.Calls();
            }
            EXPECT_GE(callsMade, call);
            EXPECT_TRUE(result == S_OK || FAILED(result));
            EXPECT_EQ(LivePlatformObjects(), before);
            EXPECT_EQ(operation(), S_OK);
        }
        return count;
    }
};

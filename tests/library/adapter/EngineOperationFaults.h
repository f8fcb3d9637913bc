#pragma once

#include "tests/library/adapter/Lines.h"
#include "tests/support/AllocationCounter.h"
#include "tests/support/EngineOperationTest.h"
#include "tests/support/FaultInjector.h"
#include "tests/support/RegistryDouble.h"

#include <functional>
#include <stdexcept>

/// What the operations that need the engine do when memory is short or something throws.
class EngineOperationFaults : public EngineOperationTest
{
protected:
    /// Forgets everything, also the memory of the events.
    void Clear()
    {
        Restart();
        events = {};
    }

    /// Bytes that a run leaves behind.
    std::size_t LossOf(const std::function<void()>& run)
    {
        const std::size_t before = AllocatedBytes();
        run();
        Clear();
        return AllocatedBytes() - before;
    }

    /// Neither a run loses anything nor one in which any event throws.
    /// @param operation fails when something throws in the wrapper's creation
    void ExpectNoLossAtAnyException(const std::function<HRESULT()>& operation)
    {
        ASSERT_EQ(operation(), S_OK);
        const std::size_t all = events.size();
        Clear();
        for (std::size_t n = 1; n <= all; ++n)
        {
            SCOPED_TRACE(n);
            throwingEvent = n;
            const std::size_t loss = LossOf([&] {
                try
                {
                    EXPECT_EQ(operation(), E_FAIL);
                }
                catch (const std::runtime_error&)
                {
                    // All but those of the wrapper's creation.
                }
            });
            EXPECT_EQ(loss, 0U);
            EXPECT_EQ(OpenRegistryKeys(), 0U);
        }
    }
};

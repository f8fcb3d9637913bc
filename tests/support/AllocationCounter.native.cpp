#include "tests/support/AllocationCounter.h"

#include "tests/support/FaultInjector.h"

#include <malloc.h>

#include <utility>

// The address sanitizer's own figure; its allocator stands in place of malloc's.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes() __attribute__((weak));

namespace
{

AllocationCounter* innermost = nullptr;

} // namespace

AllocationCounter::AllocationCounter(std::optional<std::size_t> countedSize, std::function<void()> then)
    : size(countedSize), happening(std::move(then)), outer(innermost)
{
    innermost = this;
}

AllocationCounter::~AllocationCounter()
{
    innermost = outer;
}

void AllocationCounter::Note(std::size_t size)
{
    for (AllocationCounter* counter = innermost; counter != nullptr; counter = counter->outer)
    {
        if (!counter->size || *counter->size == size)
        {
            ++counter->calls;
            if (counter->happening)
            {
                const FaultPause pause;
                counter->happening();
            }
        }
    }
}

std::size_t AllocatedBytes()
{
    return AllocatedBytesAreExact() ? __sanitizer_get_current_allocated_bytes() : mallinfo2().uordblks;
}

bool AllocatedBytesAreExact()
{
    return __sanitizer_get_current_allocated_bytes != nullptr;
}

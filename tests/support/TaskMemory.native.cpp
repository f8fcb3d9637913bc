#include "tests/support/TaskMemory.h"

#include "tests/support/FaultInjector.h"

#include <windows.h>

#include <objbase.h>

#include <atomic>
#include <cstdlib>

namespace
{

std::atomic<std::size_t> liveBlocks = 0;

} // namespace

std::size_t LiveTaskMemoryBlocks()
{
    return liveBlocks;
}

LPVOID WINAPI CoTaskMemAlloc(SIZE_T size)
{
    void* block = FaultPlan::ShouldFail(FallibleCall::TaskMemory) ? nullptr : std::malloc(size);
    liveBlocks += block != nullptr ? 1 : 0;
    return block;
}

void WINAPI CoTaskMemFree(LPVOID block)
{
    liveBlocks -= block != nullptr ? 1 : 0;
    std::free(block);
}

#include "tests/long/PlatformUse.h"

#include <windows.h>

#include <objidl.h>
#include <psapi.h>

#include <stdexcept>

namespace
{

/// Counts the blocks of task memory.
class TaskMemorySpy final : public IMallocSpy
{
public:
    int64_t allocated = 0;
    int64_t freed = 0;

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override
    {
        *object = iid == IID_IUnknown || iid == IID_IMallocSpy ? this : nullptr;
        return *object == nullptr ? E_NOINTERFACE : S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override
    {
        return 1;
    }
    STDMETHODIMP_(ULONG) Release() override
    {
        return 1;
    }
    STDMETHODIMP_(SIZE_T) PreAlloc(SIZE_T size) override
    {
        return size;
    }
    STDMETHODIMP_(void*) PostAlloc(void* block) override
    {
        allocated += block != nullptr ? 1 : 0;
        return block;
    }
    STDMETHODIMP_(void*) PreFree(void* block, BOOL /*spied*/) override
    {
        freed += block != nullptr ? 1 : 0;
        return block;
    }
    STDMETHODIMP_(void) PostFree(BOOL /*spied*/) override
    {
    }
    STDMETHODIMP_(SIZE_T) PreRealloc(void* block, SIZE_T size, void** newBlock, BOOL /*spied*/) override
    {
        *newBlock = block;
        return size;
    }
    STDMETHODIMP_(void*) PostRealloc(void* block, BOOL /*spied*/) override
    {
        return block;
    }
    STDMETHODIMP_(void*) PreGetSize(void* block, BOOL /*spied*/) override
    {
        return block;
    }
    STDMETHODIMP_(SIZE_T) PostGetSize(SIZE_T size, BOOL /*spied*/) override
    {
        return size;
    }
    STDMETHODIMP_(void*) PreDidAlloc(void* block, BOOL /*spied*/) override
    {
        return block;
    }
    STDMETHODIMP_(int) PostDidAlloc(void* /*block*/, BOOL /*spied*/, int actual) override
    {
        return actual;
    }
    STDMETHODIMP_(void) PreHeapMinimize() override
    {
    }
    STDMETHODIMP_(void) PostHeapMinimize() override
    {
    }
};

TaskMemorySpy spy;

int64_t Handles()
{
    DWORD count = 0;
    GetProcessHandleCount(GetCurrentProcess(), &count);
    return count;
}

/// Wine, which does not count a process's handles, hands out the lowest number that is free.
int64_t NextHandle()
{
    const HANDLE event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    CloseHandle(event);
    return static_cast<int64_t>(reinterpret_cast<intptr_t>(event));
}

/// The process's share of the page file: its private memory, in whole pages.
int64_t PrivateBytes()
{
    PROCESS_MEMORY_COUNTERS counters{};
    K32GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof(counters));
    return static_cast<int64_t>(counters.PagefileUsage);
}

} // namespace

void WatchPlatform()
{
    if (FAILED(CoRegisterMallocSpy(&spy)))
    {
        throw std::runtime_error("task memory cannot be watched");
    }
}

std::vector<PlatformFigure> PlatformUse(int64_t heapGrowth)
{
    // A heap takes a megabyte at once, and holds beside each small block half as much again or more of its own.
    constexpr int64_t HeapPiece = 1024 * 1024;
    return {{"handles (Wine counts none)", Handles(), 0},
            {"number of the next handle", NextHandle(), 0},
            {"blocks of task memory, allocated", spy.allocated, INT64_MAX},
            {"blocks of task memory, not freed", spy.allocated - spy.freed, 0},
            {"private bytes", PrivateBytes(), 3 * heapGrowth + HeapPiece}};
}

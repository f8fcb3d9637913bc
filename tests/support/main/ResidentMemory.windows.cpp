#include "tests/support/main/ResidentMemory.h"

#include <windows.h>

#include <psapi.h>

ResidentMemory::ResidentMemory() = default;
ResidentMemory::~ResidentMemory() = default;

uint64_t ResidentMemory::Bytes() const
{
    PROCESS_MEMORY_COUNTERS counters{};
    return K32GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof(counters)) != FALSE ? counters.WorkingSetSize : 0;
}

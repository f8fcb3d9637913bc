#include "tests/long/HeapUse.h"

#include <windows.h>

void GetHeapUse(HeapUse* use)
{
    *use = {};
    std::array<HANDLE, 64> heaps{};
    const DWORD count = GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data());
    for (DWORD i = 0; i < count && i < heaps.size(); ++i)
    {
        PROCESS_HEAP_ENTRY entry{};
        while (HeapWalk(heaps[i], &entry) != FALSE)
        {
            if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0)
            {
                use->bytes += entry.cbData;
                if (entry.cbData <= HeapUse::MostSize)
                {
                    ++use->blocks[entry.cbData];
                }
            }
        }
    }
}

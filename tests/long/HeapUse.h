#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// The blocks that the heap has handed out and not got back, as they were asked for: natively those of the operators new, whose
/// definitions come with this; on Windows those of all heaps of the process.
struct HeapUse
{
    static constexpr std::size_t MostSize = 4096;

    std::array<int64_t, MostSize + 1> blocks{}; ///< by size; larger ones are no part of it
    int64_t bytes = 0;                          ///< of all blocks
};

/// As it is now. Takes nothing from the heap.
void GetHeapUse(HeapUse* use);

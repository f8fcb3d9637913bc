#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// Something of the platform's that a process holds.
struct PlatformFigure
{
    std::string what;
    int64_t amount;
    int64_t mostGrowth; ///< that is no loss
};

/// Begins to count what is only counted from the beginning on.
void WatchPlatform();

/// What the process holds now.
/// @param heapGrowth  bytes by which the heap is meant to grow
std::vector<PlatformFigure> PlatformUse(int64_t heapGrowth);

#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>

/// Counts the calls of the global operators new while it lives: all of them, or those for exactly one size. Counters may stand
/// at the same time; the one made last goes first.
class AllocationCounter
{
public:
    /// @param then  what happens at each counted call, before it is carried out
    explicit AllocationCounter(std::optional<std::size_t> countedSize = std::nullopt, std::function<void()> then = {});
    AllocationCounter(const AllocationCounter&) = delete;
    AllocationCounter& operator=(const AllocationCounter&) = delete;
    ~AllocationCounter();

    uint64_t Calls() const
    {
        return calls;
    }

    /// Told by the operators new, once for each call, also one that fails.
    static void Note(std::size_t size);

private:
    std::optional<std::size_t> size;
    std::function<void()> happening;
    uint64_t calls = 0;
    AllocationCounter* outer;
};

/// Bytes that the heap has handed out and not got back. Without the address sanitizer the figure is glibc's, with its thread
/// cache off (GLIBC_TUNABLES=glibc.malloc.tcache_count=0, as ctest sets it): 16 bytes more or less when a block of the same size
/// is taken from another place.
std::size_t AllocatedBytes();

/// Whether the figure above holds to the byte.
bool AllocatedBytesAreExact();

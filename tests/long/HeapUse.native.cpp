// Operators new and delete that write down what they hand out and get back. For programs of one thread.
#include "tests/long/HeapUse.h"

#include <cstdlib>
#include <new>

namespace
{

constinit HeapUse heap;

/// Lies before each block; as long as the strictest alignment asks for.
struct alignas(std::max_align_t) Head
{
    std::size_t size;
};

void Note(std::size_t size, int change)
{
    if (size <= HeapUse::MostSize)
    {
        heap.blocks[size] += change;
    }
    heap.bytes += change * static_cast<int64_t>(size);
}

void* Allocate(std::size_t size)
{
    auto* const head = static_cast<Head*>(std::malloc(sizeof(Head) + size));
    if (head == nullptr)
    {
        return nullptr;
    }
    head->size = size;
    Note(size, 1);
    return head + 1;
}

void* AllocateOrThrow(std::size_t size)
{
    if (void* block = Allocate(size))
    {
        return block;
    }
    throw std::bad_alloc();
}

void Free(void* block)
{
    if (block != nullptr)
    {
        Head* const head = static_cast<Head*>(block) - 1;
        Note(head->size, -1);
        std::free(head);
    }
}

} // namespace

void GetHeapUse(HeapUse* use)
{
    *use = heap;
}

void* operator new(std::size_t size)
{
    return AllocateOrThrow(size);
}

void* operator new[](std::size_t size)
{
    return AllocateOrThrow(size);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return Allocate(size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return Allocate(size);
}

void operator delete(void* block) noexcept
{
    Free(block);
}

void operator delete[](void* block) noexcept
{
    Free(block);
}

void operator delete(void* block, std::size_t) noexcept
{
    Free(block);
}

void operator delete[](void* block, std::size_t) noexcept
{
    Free(block);
}

#pragma once

#include <windows.h>

#include <objbase.h>

#include <memory>
#include <new>

namespace velox::oemadapter
{

struct TaskMemoryFree
{
    void operator()(void* block) const
    {
        CoTaskMemFree(block);
    }
};

/// The one owner of a block or an array that is handed over with CoTaskMemAlloc and CoTaskMemFree.
template <typename Element>
using TaskMemory = std::unique_ptr<Element, TaskMemoryFree>;

/// @throws std::bad_alloc
template <typename Element>
TaskMemory<Element> MakeTaskMemory(std::size_t count)
{
    void* const block = CoTaskMemAlloc(count * sizeof(Element));
    if (block == nullptr)
    {
        throw std::bad_alloc();
    }
    return TaskMemory<Element>(static_cast<Element*>(block));
}

} // namespace velox::oemadapter

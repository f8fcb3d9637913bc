#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>

extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*onMalloc)(const volatile void*, std::size_t),
                                                         void (*onFree)(const volatile void*)) __attribute__((weak));

/// Counts the process's allocations. The matrix library allocates past the operators new, so the address sanitizer counts; other
/// builds skip these tests.
class CountedAllocations : public testing::Test
{
protected:
    void SetUp() override
    {
        if (__sanitizer_install_malloc_and_free_hooks == nullptr)
        {
            GTEST_SKIP() << "nobody counts allocations in this build";
        }
        static const int installed = __sanitizer_install_malloc_and_free_hooks(OnAllocation, OnFree);
        ASSERT_NE(installed, 0);
    }

    static inline std::atomic<int> allocations = 0;

private:
    static void OnAllocation(const volatile void* /*block*/, std::size_t /*size*/)
    {
        ++allocations;
    }

    static void OnFree(const volatile void* /*block*/)
    {
    }
};

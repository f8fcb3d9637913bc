#include "tests/support/TaskMemory.h"

#include "tests/support/FaultInjector.h"

#include <windows.h>

#include <objbase.h>

#include <gtest/gtest.h>

namespace TaskMemoryFaultsTests
{

TEST(TaskMemory, CountsTheBlocksThatLive)
{
    const std::size_t before = LiveTaskMemoryBlocks();
    void* one = CoTaskMemAlloc(8);
    void* empty = CoTaskMemAlloc(0);
    EXPECT_NE(one, nullptr);
    EXPECT_NE(empty, nullptr);
    EXPECT_EQ(LiveTaskMemoryBlocks(), before + 2);
    CoTaskMemFree(one);
    CoTaskMemFree(nullptr);
    EXPECT_EQ(LiveTaskMemoryBlocks(), before + 1);
    CoTaskMemFree(empty);
    EXPECT_EQ(LiveTaskMemoryBlocks(), before);
}

TEST(TaskMemory, FailsAsThePlanSays)
{
    const std::size_t before = LiveTaskMemoryBlocks();
    const FaultPlan plan = FaultPlan::Nth(1, FallibleCall::TaskMemory);
    EXPECT_EQ(CoTaskMemAlloc(8), nullptr);
    EXPECT_EQ(LiveTaskMemoryBlocks(), before);
    void* block = CoTaskMemAlloc(8);
    EXPECT_NE(block, nullptr);
    CoTaskMemFree(block);
}

} // namespace TaskMemoryFaultsTests

#include "tests/support/AllocationCounter.h"
#include "tests/support/FaultInjector.h"

#include <gtest/gtest.h>

#include <new>

namespace AllocationFaultsTests
{

// Called directly, not through a new expression, which the compiler may leave out.
void* New(std::size_t size)
{
    return ::operator new(size);
}

TEST(Allocation, EveryFormCountsOnce)
{
    const AllocationCounter all;
    ::operator delete(::operator new(24));
    ::operator delete[](::operator new[](24));
    ::operator delete(::operator new(24, std::nothrow));
    ::operator delete[](::operator new[](24, std::nothrow));
    EXPECT_EQ(all.Calls(), 4U);
}

TEST(Allocation, ACounterOfOneSizePassesOverTheOthers)
{
    const AllocationCounter all;
    const AllocationCounter some(24);
    ::operator delete(New(23));
    ::operator delete(New(24));
    ::operator delete(New(25));
    EXPECT_EQ(some.Calls(), 1U);
    EXPECT_EQ(all.Calls(), 3U);
}

TEST(Allocation, ACounterTellsOfEachCallBeforeItIsCarriedOut)
{
    int told = 0;
    const AllocationCounter counter(4711, [&told] { ++told; });
    ::operator delete(New(4711));
    EXPECT_EQ(told, 1);
}

TEST(Allocation, ACounterEndsWithItsObject)
{
    const AllocationCounter outer;
    {
        const AllocationCounter inner;
    }
    ::operator delete(New(24));
    EXPECT_EQ(outer.Calls(), 1U);
}

TEST(Allocation, ThrowingFormsThrowAsThePlanSays)
{
    const FaultPlan plan = FaultPlan::From(1, FallibleCall::Allocation);
    EXPECT_THROW(::operator delete(New(24)), std::bad_alloc);
    EXPECT_THROW(::operator delete[](::operator new[](24)), std::bad_alloc);
    void* block = ::operator new(24, std::nothrow);
    EXPECT_NE(block, nullptr);
    ::operator delete(block);
    EXPECT_EQ(plan.Calls(), 2U);
}

TEST(Allocation, NothrowFormsGiveNullAsThePlanSays)
{
    const FaultPlan plan = FaultPlan::From(1, FallibleCall::NothrowAllocation);
    EXPECT_EQ(::operator new(24, std::nothrow), nullptr);
    EXPECT_EQ(::operator new[](24, std::nothrow), nullptr);
    EXPECT_NO_THROW(::operator delete(New(24)));
    EXPECT_EQ(plan.Calls(), 2U);
}

TEST(Allocation, AFailedCallIsCounted)
{
    const AllocationCounter all;
    const FaultPlan plan = FaultPlan::From(1, FallibleCall::NothrowAllocation);
    EXPECT_EQ(::operator new(24, std::nothrow), nullptr);
    EXPECT_EQ(all.Calls(), 1U);
}

TEST(Allocation, TheHeapsBytesGrowAndShrink)
{
    const std::size_t before = AllocatedBytes();
    void* block = New(100000);
    const std::size_t grown = AllocatedBytes();
    ::operator delete(block);
    EXPECT_GE(grown, before + 100000);
    EXPECT_EQ(AllocatedBytes(), before);
}

} // namespace AllocationFaultsTests

// The global operators new, which can be made to fail and otherwise go on to the hidden ones, so that the sanitizer still sees
// which new a delete belongs to. The operators delete are left as they are.
#include "tests/support/AllocationCounter.h"
#include "tests/support/FaultInjector.h"
#include "tests/support/NextDefinition.h"

#include <new>

namespace
{

// True while a hidden operator runs: the C++ runtime's call one another, and that is one allocation still.
thread_local bool goingOn = false;

class GoingOn
{
public:
    GoingOn()
    {
        goingOn = true;
    }
    GoingOn(const GoingOn&) = delete;
    GoingOn& operator=(const GoingOn&) = delete;
    ~GoingOn()
    {
        goingOn = false;
    }
};

/// Whether the call is to fail.
bool Begin(std::size_t size, FallibleCall kind)
{
    AllocationCounter::Note(size);
    return FaultPlan::ShouldFail(kind);
}

using New = void*(std::size_t);
using NothrowNew = void*(std::size_t, const std::nothrow_t&);

void* Allocate(New* next, std::size_t size)
{
    if (goingOn)
    {
        return next(size);
    }
    if (Begin(size, FallibleCall::Allocation))
    {
        throw std::bad_alloc();
    }
    const GoingOn going;
    return next(size);
}

void* Allocate(NothrowNew* next, std::size_t size)
{
    if (goingOn)
    {
        return next(size, std::nothrow);
    }
    if (Begin(size, FallibleCall::NothrowAllocation))
    {
        return nullptr;
    }
    const GoingOn going;
    return next(size, std::nothrow);
}

} // namespace

void* operator new(std::size_t size)
{
    static New* const next = NextDefinition<New>("_Znwm");
    return Allocate(next, size);
}

void* operator new[](std::size_t size)
{
    static New* const next = NextDefinition<New>("_Znam");
    return Allocate(next, size);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    static NothrowNew* const next = NextDefinition<NothrowNew>("_ZnwmRKSt9nothrow_t");
    return Allocate(next, size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    static NothrowNew* const next = NextDefinition<NothrowNew>("_ZnamRKSt9nothrow_t");
    return Allocate(next, size);
}

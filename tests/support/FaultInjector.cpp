#include "tests/support/FaultInjector.h"

namespace
{

// Each thread's own: what one thread's calls do is no plan of another's.
thread_local FaultPlan* currentPlan = nullptr;
thread_local int pauses = 0;

} // namespace

FaultPlan::FaultPlan(uint64_t first, uint64_t last, std::optional<FallibleCall> kind)
    : firstFailing(first), lastFailing(last), failingKind(kind)
{
    currentPlan = this;
}

FaultPlan::~FaultPlan()
{
    currentPlan = nullptr;
}

bool FaultPlan::ShouldFail(FallibleCall kind)
{
    if (currentPlan == nullptr || pauses > 0 || (currentPlan->failingKind && *currentPlan->failingKind != kind))
    {
        return false;
    }
    const uint64_t call = ++currentPlan->calls;
    return currentPlan->firstFailing <= call && call <= currentPlan->lastFailing;
}

FaultPause::FaultPause()
{
    ++pauses;
}

FaultPause::~FaultPause()
{
    --pauses;
}

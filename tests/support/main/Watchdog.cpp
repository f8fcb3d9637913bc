#include "tests/support/main/Watchdog.h"

#include "tests/support/main/ResidentMemory.h"

#include <cstdio>
#include <cstdlib>

namespace
{

/// Without the handlers of a usual end: the runaway may hold any lock.
[[noreturn]] void End(const char* what, unsigned long long limit, const char* unit)
{
    const testing::TestInfo* const test = testing::UnitTest::GetInstance()->current_test_info();
    std::fprintf(stderr, "%s.%s: %s more than %llu %s.\n", test != nullptr ? test->test_suite_name() : "(between tests)",
                 test != nullptr ? test->name() : "", what, limit, unit);
    std::_Exit(Watchdog::ExitCode);
}

} // namespace

Watchdog::Watchdog(const TestLimits& testLimits) : limits(testLimits)
{
    // What the thread's start allocates is no test's.
    std::unique_lock lock(mutex);
    change.wait(lock, [this] { return watching; });
}

Watchdog::~Watchdog()
{
    {
        const std::lock_guard lock(mutex);
        stopped = true;
    }
    change.notify_one();
    thread.join();
}

void Watchdog::OnTestStart(const testing::TestInfo& /*test*/)
{
    start = Clock::now();
}

void Watchdog::Watch()
{
    const ResidentMemory memory;
    std::unique_lock lock(mutex);
    watching = true;
    change.notify_one();
    while (!change.wait_for(lock, limits.look, [this] { return stopped; }))
    {
        if (Clock::now() - start.load() > limits.time)
        {
            End("took", static_cast<unsigned long long>(limits.time.count()), "ms");
        }
        if (memory.Bytes() > limits.bytes)
        {
            End("the program holds", limits.bytes, "bytes of memory");
        }
    }
}

#include "tests/support/main/Watchdog.h"

#include <cstdlib>
#include <vector>

namespace WatchdogTests
{

using namespace std::chrono_literals;
using testing::ExitedWithCode;

constexpr uint64_t NoLimit = UINT64_MAX;

void Sleep(const TestLimits& limits)
{
    const Watchdog watchdog(limits);
    std::this_thread::sleep_for(10s);
}

/// Lives for a second, and is told of a new test every 10 ms.
void RunShortTests(const TestLimits& limits)
{
    Watchdog watchdog(limits);
    for (int i = 0; i < 100; ++i)
    {
        std::this_thread::sleep_for(10ms);
        watchdog.OnTestStart(*testing::UnitTest::GetInstance()->current_test_info());
    }
    std::_Exit(0);
}

TEST(Watchdog, EndsATestThatTakesTooLong)
{
    EXPECT_EXIT(Sleep({50ms, NoLimit, 1ms}), ExitedWithCode(Watchdog::ExitCode),
                "Watchdog.EndsATestThatTakesTooLong: took more than 50 ms");
}

TEST(Watchdog, EndsATestThatHoldsTooMuch)
{
    EXPECT_EXIT(Sleep({1h, 4096, 1ms}), ExitedWithCode(Watchdog::ExitCode),
                "Watchdog.EndsATestThatHoldsTooMuch: the program holds more than 4096 bytes of memory");
}

TEST(Watchdog, SeesWhatIsHeldAndNotWhatIsOnlyReserved)
{
    // 256 MB more than at the beginning; the test program itself stays below.
    EXPECT_EXIT(
        {
            const std::vector<char> held(768U << 20, 'x');
            const volatile char* const read = held.data(); // so that no compiler leaves it out
            Sleep({1h, 512U << 20, 1ms});
            std::_Exit(*read);
        },
        ExitedWithCode(Watchdog::ExitCode), "more than 536870912 bytes");
}

TEST(Watchdog, EachTestHasTheWholeTime)
{
    EXPECT_EXIT(RunShortTests({500ms, NoLimit, 1ms}), ExitedWithCode(0), "");
}

} // namespace WatchdogTests

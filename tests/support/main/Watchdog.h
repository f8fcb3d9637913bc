#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <thread>

struct TestLimits
{
    std::chrono::milliseconds time;      ///< of one test
    uint64_t bytes;                      ///< resident memory of the process
    std::chrono::milliseconds look{100}; ///< how often they are looked at
};

/// Ends the program, with the running test's name on standard error, when a test takes more than it may. It watches from its
/// making on; as a listener of the test program it is told when a test begins.
///
/// The watching thread allocates nothing and opens nothing: tests count allocations, compare the heap and make calls fail.
class Watchdog : public testing::EmptyTestEventListener
{
public:
    static constexpr int ExitCode = 3;

    explicit Watchdog(const TestLimits& limits);
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;
    ~Watchdog() override;

    void OnTestStart(const testing::TestInfo& test) override;

private:
    using Clock = std::chrono::steady_clock;

    void Watch();

    const TestLimits limits;
    std::atomic<Clock::time_point> start{Clock::now()};
    std::mutex mutex;
    std::condition_variable change;
    bool watching = false;
    bool stopped = false;
    std::thread thread{&Watchdog::Watch, this};
};

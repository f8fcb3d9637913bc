#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace velox::engine
{

/// Threads that wait for work which is cut into numbered parts.
class WorkerPool
{
public:
    using Work = std::function<void(int part)>;

    /// @param threads  that work at the same time, the caller's among them; at least 1
    explicit WorkerPool(int threads);
    ~WorkerPool();
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    /// Does all parts, in no certain order, and returns when they are done. When one throws, the parts that were not begun are
    /// left out, and the first exception comes to the caller once no thread is at work any more.
    void Run(int parts, const Work& work);

private:
    void WaitForWork();
    void DoParts();
    void KeepFailure();

    std::mutex mutex;
    std::condition_variable started;
    std::condition_variable finished;
    int64_t round = 0;
    int working = 0; ///< threads other than the caller's that have not finished the round
    bool stopping = false;
    const Work* current = nullptr;
    int partCount = 0;
    std::atomic<int> nextPart = 0;
    std::exception_ptr failure; ///< the round's first
    std::vector<std::thread> threads;
};

} // namespace velox::engine

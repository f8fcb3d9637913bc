#include "engine/base/WorkerPool.h"

#include <utility>

namespace velox::engine
{

WorkerPool::WorkerPool(int threadCount)
{
    for (int i = 1; i < threadCount; ++i)
    {
        threads.emplace_back(&WorkerPool::WaitForWork, this);
    }
}

WorkerPool::~WorkerPool()
{
    {
        const std::lock_guard lock(mutex);
        stopping = true;
    }
    started.notify_all();
    for (std::thread& thread : threads)
    {
        thread.join();
    }
}

void WorkerPool::Run(int parts, const Work& work)
{
    {
        const std::lock_guard lock(mutex);
        current = &work;
        partCount = parts;
        nextPart = 0;
        failure = nullptr;
        working = static_cast<int>(threads.size());
        ++round;
    }
    started.notify_all();
    DoParts();
    std::unique_lock lock(mutex);
    finished.wait(lock, [this] { return working == 0; });
    if (failure != nullptr)
    {
        std::rethrow_exception(std::exchange(failure, nullptr));
    }
}

void WorkerPool::WaitForWork()
{
    int64_t done = 0;
    std::unique_lock lock(mutex);
    while (true)
    {
        started.wait(lock, [&] { return stopping || round != done; });
        if (stopping)
        {
            return;
        }
        done = round;
        lock.unlock();
        DoParts();
        lock.lock();
        if (--working == 0)
        {
            finished.notify_one();
        }
    }
}

void WorkerPool::DoParts()
{
    for (int part = nextPart++; part < partCount; part = nextPart++)
    {
        try
        {
            (*current)(part);
        }
        catch (...)
        {
            KeepFailure();
        }
    }
}

void WorkerPool::KeepFailure()
{
    nextPart = partCount;
    const std::lock_guard lock(mutex);
    if (failure == nullptr)
    {
        failure = std::current_exception();
    }
}

} // namespace velox::engine

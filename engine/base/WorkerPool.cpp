#include "engine/base/WorkerPool.h"

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
        working = static_cast<int>(threads.size());
        ++round;
    }
    started.notify_all();
    DoParts();
    std::unique_lock lock(mutex);
    finished.wait(lock, [this] { return working == 0; });
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
        (*current)(part);
    }
}

} // namespace velox::engine

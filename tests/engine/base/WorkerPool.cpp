#include "engine/base/WorkerPool.h"

#include <gmock/gmock.h>

#include <new>

#include <atomic>

#include <set>

namespace WorkerPoolTests
{

using Pool = velox::engine::WorkerPool;

TEST(WorkerPool, DoesEachPartOnceInEveryRound)
{
    for (const int threads : {1, 2, 3, 8})
    {
        SCOPED_TRACE(threads);
        Pool pool(threads);
        std::vector<int> counts(5, 0);
        const Pool::Work count = [&](int part) {
            ++counts[static_cast<std::size_t>(part)];
        };
        for (int round = 0; round < 500; ++round)
        {
            pool.Run(5, count);
        }
        EXPECT_THAT(counts, testing::Each(500));
    }
}

TEST(WorkerPool, PartsRunAtTheSameTime)
{
    Pool pool(2);
    std::mutex mutex;
    std::condition_variable changed;
    int inside = 0;
    std::set<std::thread::id> ids;
    // Neither part can end before the other one has begun.
    pool.Run(2, [&](int) {
        std::unique_lock lock(mutex);
        ids.insert(std::this_thread::get_id());
        ++inside;
        changed.notify_all();
        changed.wait(lock, [&] { return inside == 2; });
    });
    EXPECT_EQ(ids.size(), 2U);
    EXPECT_TRUE(ids.contains(std::this_thread::get_id()));
}

TEST(WorkerPool, OneThreadIsTheCallers)
{
    Pool pool(1);
    std::set<std::thread::id> ids;
    pool.Run(3, [&](int) { ids.insert(std::this_thread::get_id()); });
    EXPECT_THAT(ids, testing::ElementsAre(std::this_thread::get_id()));
}

TEST(WorkerPool, AnExceptionOfAnyThreadReachesTheCaller)
{
    for (const int threads : {1, 2, 4})
    {
        SCOPED_TRACE(threads);
        Pool pool(threads);
        EXPECT_THROW(pool.Run(100,
                              [](int part) {
                                  if (part >= 50)
                                  {
                                      throw std::bad_alloc();
                                  }
                              }),
                     std::bad_alloc);
        std::atomic<int> done = 0;
        pool.Run(100, [&](int) { ++done; });
        EXPECT_EQ(done, 100) << "the pool works on";
    }
}

TEST(WorkerPool, PartsAreLeftOutOnceOneHasFailed)
{
    Pool pool(1);
    int calls = 0;
    const auto fail = [&](int) {
        ++calls;
        throw std::bad_alloc();
    };
    EXPECT_THROW(pool.Run(100, fail), std::bad_alloc);
    EXPECT_EQ(calls, 1);
}

TEST(WorkerPool, NoPartsAreDoneAtOnce)
{
    Pool pool(2);
    int calls = 0;
    pool.Run(0, [&](int) { ++calls; });
    EXPECT_EQ(calls, 0);
}

} // namespace WorkerPoolTests

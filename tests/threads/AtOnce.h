#pragma once

#include <latch>
#include <thread>
#include <vector>

inline constexpr int Threads = 8;

/// Does the same on eight threads, which begin together, some times on each of them. @return what came of it
template <typename Work>
auto AtOnce(int rounds, const Work& work)
{
    std::vector<std::vector<decltype(work())>> outcomes(Threads);
    std::latch start(Threads);
    std::vector<std::thread> threads;
    for (auto& outcome : outcomes)
    {
        threads.emplace_back([&] {
            start.arrive_and_wait();
            for (int round = 0; round < rounds; ++round)
            {
                outcome.push_back(work());
            }
        });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }

    std::vector<decltype(work())> all;
    for (auto& outcome : outcomes)
    {
        all.insert(all.end(), std::make_move_iterator(outcome.begin()), std::make_move_iterator(outcome.end()));
    }
    return all;
}

#pragma once

#include <unistd.h>

#include <array>
#include <atomic>
#include <cstdlib>
#include <fcntl.h>

/// What scripts/mutate writes into a copy of the product's sources: every mutant is compiled in, and an environment variable says
/// which one lives. So all of them take one build.
namespace Mutation
{

inline constexpr int MostMutants = 16384;

/// Which mutants were asked for; written at the end to the file that VELOX_MUTANTS_REACHED names. Allocates nothing and throws
/// nothing: it runs between faults that tests inject.
class Reached
{
public:
    Reached() = default;
    Reached(const Reached&) = delete;
    Reached& operator=(const Reached&) = delete;
    ~Reached()
    {
        if (const char* path = std::getenv("VELOX_MUTANTS_REACHED"))
        {
            const int file = open(path, O_WRONLY | O_CREAT | O_TRUNC, 0600);
            static_cast<void>(!write(file, flags.data(), flags.size()));
            close(file);
        }
    }
    void Add(int number)
    {
        flags[static_cast<std::size_t>(number)].store(1, std::memory_order_relaxed);
    }

private:
    std::array<std::atomic<char>, MostMutants> flags{};
};

inline Reached reached;

inline bool Lives(int number)
{
    static const int living = [] {
        const char* text = std::getenv("VELOX_MUTANT");
        return text == nullptr ? -1 : std::atoi(text);
    }();
    reached.Add(number);
    return living == number;
}

} // namespace Mutation

#define MUTANT_VALUE(number, other, own) (Mutation::Lives(number) ? (other) : (own))
#define MUTANT_UNLESS(number) if (!Mutation::Lives(number))

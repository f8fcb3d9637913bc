#pragma once

#include <cstddef>
#include <cstdint>

namespace velox::engine
{

/// Draws that have the same bits on every platform, which the standard library's distributions do not promise: the generator is
/// SplitMix64 (Steele, Lea and Flood, "Fast splittable pseudorandom number generators", 2014), and nothing but integer arithmetic,
/// additions and multiplications follows it.
class Random
{
public:
    explicit Random(uint64_t seed) : state(seed)
    {
    }

    uint64_t Next()
    {
        state += 0x9E3779B97F4A7C15ULL;
        uint64_t mixed = state;
        mixed = (mixed ^ (mixed >> 30U)) * 0xBF58476D1CE4E5B9ULL;
        mixed = (mixed ^ (mixed >> 27U)) * 0x94D049BB133111EBULL;
        return mixed ^ (mixed >> 31U);
    }

    /// Even over [0, 1).
    double Uniform()
    {
        constexpr double Step = 0x1p-53;
        return static_cast<double>(Next() >> 11U) * Step;
    }

    double Uniform(double least, double most)
    {
        return least + (most - least) * Uniform();
    }

    /// Even over 0 to count - 1. @param count  at least 1, far below 2^53
    std::size_t Below(std::size_t count)
    {
        return static_cast<std::size_t>(Uniform() * static_cast<double>(count));
    }

    bool Chance(double probability)
    {
        return Uniform() < probability;
    }

    /// Mean 0, deviation 1, within +-6: a sum of twelve even draws of 16 bits each.
    float Normal()
    {
        constexpr int Draws = 12;
        constexpr int PerWord = 4;
        constexpr double Steps = 65536.0;
        uint64_t sum = 0;
        for (int i = 0; i < Draws / PerWord; ++i)
        {
            const uint64_t word = Next();
            sum += (word & 0xFFFFU) + ((word >> 16U) & 0xFFFFU) + ((word >> 32U) & 0xFFFFU) + (word >> 48U);
        }
        constexpr double Middle = Draws * (Steps - 1.0) / 2.0;
        return static_cast<float>((static_cast<double>(sum) - Middle) / Steps);
    }

private:
    uint64_t state;
};

} // namespace velox::engine

#pragma once

#include <cstddef>
#include <cstdint>

namespace velox::engine
{

/// Random numbers that are the same with every standard library (SplitMix64: Steele, Lea and Flood, "Fast splittable pseudorandom
/// number generators", 2014).
class RandomStream
{
public:
    /// Streams of different seeds are independent of each other.
    explicit RandomStream(uint64_t seed);

    uint64_t Bits()
    {
        state += 0x9E3779B97F4A7C15U;
        return Mix(state);
    }

    /// @return at least 0, less than 1
    double Uniform();

    /// @return low <= value <= high
    int64_t Integer(int64_t low, int64_t high);

    /// Normally distributed with mean 0 and deviation 1.
    double Normal();

private:
    static uint64_t Mix(uint64_t value)
    {
        value = (value ^ (value >> 30U)) * 0xBF58476D1CE4E5B9U;
        value = (value ^ (value >> 27U)) * 0x94D049BB133111EBU;
        return value ^ (value >> 31U);
    }

    uint64_t state;
};

} // namespace velox::engine

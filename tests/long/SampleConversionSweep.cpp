// Compares both ways of converting samples with the oracle, for all 2^32 patterns of a float. Not part of the default run:
//
//     ctest --test-dir build/PRESET -C Long -R long/ --verbose
#include "library/wovwrapper/SampleConversion.h"
#include "tests/support/SampleOracle.h"

#include <bit>
#include <cstdio>
#include <vector>

namespace
{

constexpr uint64_t Patterns = uint64_t{1} << 32U;
constexpr std::size_t BlockSize = 65536;

/// Compares the results for the patterns from `first` on, and tells of the first that differs.
bool Agree(const char* path, uint64_t first, const std::vector<int16_t>& found, const std::vector<int16_t>& expected)
{
    if (found == expected)
    {
        return true;
    }
    std::size_t i = 0;
    while (found[i] == expected[i])
    {
        ++i;
    }
    std::printf("%s: pattern 0x%08llx gives %d, not %d\n", path, static_cast<unsigned long long>(first + i), found[i],
                expected[i]);
    return false;
}

} // namespace

int main()
{
    std::vector<float> samples(BlockSize);
    std::vector<int16_t> expected(BlockSize);
    std::vector<int16_t> vectorised(BlockSize);
    std::vector<int16_t> plain(BlockSize);
    const auto* bytes = static_cast<const uint8_t*>(static_cast<const void*>(samples.data()));

    uint64_t compared = 0;
    for (uint64_t first = 0; first < Patterns; first += BlockSize)
    {
        for (std::size_t i = 0; i < BlockSize; ++i)
        {
            samples[i] = std::bit_cast<float>(static_cast<uint32_t>(first + i));
            expected[i] = ExpectedSample(samples[i]);
        }
        ConvertSamples(bytes, BlockSize, vectorised.data());
        ConvertSamplesPlain(bytes, BlockSize, plain.data());
        if (!Agree("ConvertSamples", first, vectorised, expected) || !Agree("ConvertSamplesPlain", first, plain, expected))
        {
            return 1;
        }
        compared += BlockSize;
    }
    std::printf("%llu patterns agree on both paths.\n", static_cast<unsigned long long>(compared));
    return 0;
}

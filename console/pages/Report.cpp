#include "console/pages/Report.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace velox::console
{

std::vector<SampleRange> WaveOf(std::span<const float> samples)
{
    const std::size_t count = std::min(samples.size(), MostWaveStretches);
    std::vector<SampleRange> ranges(count, {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::quiet_NaN()});
    for (std::size_t i = 0; i < count; ++i)
    {
        const std::size_t begin = i * samples.size() / count;
        for (const float sample : samples.subspan(begin, (i + 1) * samples.size() / count - begin))
        {
            ranges[i].least = std::fmin(ranges[i].least, sample);
            ranges[i].most = std::fmax(ranges[i].most, sample);
        }
    }
    return ranges;
}

} // namespace velox::console

#include "console/report/Picture.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace velox::console
{

namespace
{

constexpr float NoValue = std::numeric_limits<float>::quiet_NaN();

SampleRange BothOf(SampleRange one, SampleRange other)
{
    return {std::fmin(one.least, other.least), std::fmax(one.most, other.most)};
}

} // namespace

std::vector<SampleRange> WaveOf(std::span<const float> samples)
{
    const std::size_t count = std::min(samples.size(), MostWaveStretches);
    std::vector<SampleRange> ranges(count, {NoValue, NoValue});
    for (std::size_t i = 0; i < count; ++i)
    {
        const std::size_t begin = i * samples.size() / count;
        for (const float sample : samples.subspan(begin, (i + 1) * samples.size() / count - begin))
        {
            ranges[i] = BothOf(ranges[i], {sample, sample});
        }
    }
    return ranges;
}

void WaveBuilder::Add(std::span<const float> samples)
{
    for (const float sample : samples)
    {
        if (ranges.empty() || inLast == samplesPerRange)
        {
            if (ranges.size() == MostWaveStretches)
            {
                for (std::size_t i = 0; i < MostWaveStretches / 2; ++i)
                {
                    ranges[i] = BothOf(ranges[2 * i], ranges[2 * i + 1]);
                }
                ranges.resize(MostWaveStretches / 2);
                samplesPerRange *= 2;
            }
            ranges.push_back({NoValue, NoValue});
            inLast = 0;
        }
        ranges.back() = BothOf(ranges.back(), {sample, sample});
        ++inLast;
    }
}

std::vector<SampleRange> WaveBuilder::Finish()
{
    return std::move(ranges);
}

} // namespace velox::console

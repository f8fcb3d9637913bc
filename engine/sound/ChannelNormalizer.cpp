#include "engine/sound/ChannelNormalizer.h"

#include <algorithm>
#include <numeric>

namespace velox::engine
{

float MeanLevel(const MelFrame& logMel)
{
    return std::accumulate(logMel.begin(), logMel.end(), 0.0F) / static_cast<float>(MelChannels);
}

float NoiseFloor::Update(float level)
{
    constexpr float FallShare = 0.3F;   // of the gap, per frame
    constexpr float RiseShare = 0.002F; // of the gap, per frame, at most
    constexpr float MostRise = 0.01F;

    if (!started)
    {
        started = true;
        floor = level;
        return 0.0F;
    }
    const float gap = level - floor;
    floor += gap < 0.0F ? FallShare * gap : std::min(MostRise, RiseShare * gap);
    return level - floor;
}

ChannelNormalizer::ChannelNormalizer(const FeatureStatistics& trained) : statistics(trained), runningMean(trained.startMean)
{
}

void ChannelNormalizer::Apply(const MelFrame& logMel, float aboveFloor, MelFrame* feature)
{
    if (aboveFloor > NoiseFloor::SpeechMargin)
    {
        weight = std::min(weight + 1.0F, MostWeight);
        for (std::size_t i = 0; i < MelChannels; ++i)
        {
            runningMean[i] += (logMel[i] - runningMean[i]) / weight;
        }
    }
    for (std::size_t i = 0; i < MelChannels; ++i)
    {
        (*feature)[i] = (logMel[i] - runningMean[i] - statistics.mean[i]) / statistics.deviation[i];
    }
}

} // namespace velox::engine

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

    if (level < LeastLevel)
    {
        return 0.0F;
    }
    if (settled < SettlingFrames)
    {
        ++settled;
        floor = level;
        return 0.0F;
    }
    const float gap = level - floor;
    floor += gap < 0.0F ? FallShare * gap : std::min(MostRise, RiseShare * gap);
    return level - floor;
}

ChannelNormalizer::ChannelNormalizer(const FeatureStatistics& trained) : statistics(trained)
{
    recentLevels.fill(LeastMean);
}

void ChannelNormalizer::FollowPeaks(float level)
{
    constexpr float SlowFall = 0.003F; // per frame
    constexpr float FastFall = 0.3F;   // of the gap, per frame

    recentLevels[frames % recentLevels.size()] = level;
    ++frames;
    doubted = level < NoiseFloor::LeastLevel ? DoubtedFrames : std::max(0, doubted - 1);
    const float lasting = *std::min_element(recentLevels.begin(), recentLevels.end());
    slowPeak = std::max(lasting, slowPeak - SlowFall);
    fastPeak = std::max(level, fastPeak + FastFall * (level - fastPeak));
    if (guessShare < 1.0F && lasting > learnedLevel / (1.0F - guessShare) + NewSpeechRise)
    {
        Forget();
    }
}

float ChannelNormalizer::GuessLevel(float floor) const
{
    const float fromFloor = doubted > 0 ? LeastMean : floor + LeastRise;
    return std::max({LeastMean, fromFloor, std::max(slowPeak, fastPeak) - PeakAboveMean});
}

void ChannelNormalizer::Forget()
{
    guessShare = 1.0F;
    learned.fill(0.0F);
    learnedLevel = 0.0F;
    weight = StartWeight;
}

void ChannelNormalizer::Learn(const MelFrame& logMel, float level)
{
    weight = std::min(weight + 1.0F, MostWeight);
    guessShare -= guessShare / weight;
    learnedLevel += (level - learnedLevel) / weight;
    for (std::size_t i = 0; i < MelChannels; ++i)
    {
        learned[i] += (logMel[i] - learned[i]) / weight;
    }
}

void ChannelNormalizer::Apply(const MelFrame& logMel, float aboveFloor, MelFrame* feature)
{
    const float level = MeanLevel(logMel);
    FollowPeaks(level);
    if (NoiseFloor::IsSpeech(aboveFloor) && level > slowPeak - SpeechRange)
    {
        Learn(logMel, level);
    }
    const float guess = GuessLevel(level - aboveFloor);
    for (std::size_t i = 0; i < MelChannels; ++i)
    {
        const float mean = guessShare * (statistics.startShape[i] + guess) + learned[i];
        const float value = std::max(logMel[i] - mean, -Depth);
        (*feature)[i] = (value - statistics.mean[i]) / statistics.deviation[i];
    }
}

} // namespace velox::engine

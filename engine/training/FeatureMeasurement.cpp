#include "engine/training/FeatureMeasurement.h"

#include "engine/listening/PhraseSearch.h"
#include "engine/sound/ChannelNormalizer.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace velox::engine
{

namespace
{

/// Mean of the louder half of the frames.
MelFrame LouderHalfMean(std::vector<MelFrame> frames)
{
    const auto half = frames.begin() + static_cast<std::ptrdiff_t>(frames.size() / 2);
    std::nth_element(frames.begin(), half, frames.end(),
                     [](const MelFrame& a, const MelFrame& b) { return MeanLevel(a) > MeanLevel(b); });
    MelFrame mean{};
    const auto count = static_cast<float>(std::max<std::ptrdiff_t>(1, half - frames.begin()));
    for (auto frame = frames.begin(); frame != half; ++frame)
    {
        for (std::size_t i = 0; i < MelChannels; ++i)
        {
            mean[i] += (*frame)[i] / count;
        }
    }
    return mean;
}

MelFrame WithoutLevel(MelFrame frame)
{
    const float level = MeanLevel(frame);
    for (float& value : frame)
    {
        value -= level;
    }
    return frame;
}

/// Running mean and deviation of every channel.
struct ChannelMoments
{
    std::array<double, MelChannels> sum{};
    std::array<double, MelChannels> squares{};
    double count = 0.0;

    void Add(std::span<const MelFrame> features)
    {
        for (const MelFrame& feature : features)
        {
            for (std::size_t i = 0; i < MelChannels; ++i)
            {
                const auto value = static_cast<double>(feature[i]);
                sum[i] += value;
                squares[i] += value * value;
            }
            ++count;
        }
    }
};

} // namespace

FeatureStatistics MeasureStatistics(const std::vector<std::vector<float>>& background, const std::vector<PreparedTake>& takes)
{
    std::vector<MelFrame> logMel;
    for (const auto& recording : background)
    {
        const std::vector<MelFrame> frames = LogMelFrames(recording);
        logMel.insert(logMel.end(), frames.begin(), frames.end());
    }
    FeatureStatistics statistics;
    statistics.startShape = WithoutLevel(LouderHalfMean(std::move(logMel)));
    statistics.deviation.fill(1.0F);

    ChannelMoments moments;
    for (const auto& recording : background)
    {
        moments.Add(AnalyseRecording(statistics, recording, 1.0));
    }
    for (const PreparedTake& take : takes)
    {
        moments.Add(AnalyseRecording(statistics, take.PhraseSamples(), 1.0));
    }
    for (std::size_t i = 0; i < MelChannels; ++i)
    {
        const double mean = moments.sum[i] / moments.count;
        statistics.mean[i] = static_cast<float>(mean);
        statistics.deviation[i] = static_cast<float>(std::sqrt(std::max(1e-4, moments.squares[i] / moments.count - mean * mean)));
    }
    return statistics;
}

} // namespace velox::engine

#include "engine/training/BackgroundPeaks.h"

#include "engine/base/AudioFormat.h"

namespace velox::engine
{

namespace
{

/// The background as a listener hears it: short recordings are joined, since a block of the tail is longer than some.
std::vector<std::vector<float>> Streams(std::span<const std::span<const float>> background)
{
    constexpr std::size_t StreamSamples = 30 * SampleRate;
    std::vector<std::vector<float>> streams;
    for (const std::span<const float> recording : background)
    {
        if (streams.empty() || streams.back().size() >= StreamSamples)
        {
            streams.emplace_back();
        }
        streams.back().insert(streams.back().end(), recording.begin(), recording.end());
    }
    return streams;
}

} // namespace

std::vector<PhrasePlace> FindBackgroundPeaks(const PhraseModel& model, std::span<const std::span<const float>> background,
                                             WorkerPool* pool)
{
    const std::vector<std::vector<float>> streams = Streams(background);
    std::vector<std::vector<PhrasePlace>> found(streams.size());
    pool->Run(static_cast<int>(found.size()), [&](int part) {
        const auto number = static_cast<std::size_t>(part);
        found[number] = FindPeaks(model, streams[number], BackgroundTail::BlockSeconds);
    });
    std::vector<PhrasePlace> peaks;
    for (auto& places : found)
    {
        std::move(places.begin(), places.end(), std::back_inserter(peaks));
    }
    return peaks;
}

} // namespace velox::engine

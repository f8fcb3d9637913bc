#include "engine/training/BackgroundPeaks.h"

#include "engine/base/AudioFormat.h"

#include <algorithm>

namespace velox::engine
{

namespace
{

/// How much lower, in the decoder's score, the background scores that the network learned from: 0.2 to 0.4 were measured, and
/// more where two of the training's languages were left out.
constexpr float UnheardShift = 0.3F;

/// The background as a listener hears it: short recordings are joined, since a block of the tail is longer than some.
std::vector<std::vector<float>> Streams(const std::vector<std::vector<float>>& background)
{
    constexpr std::size_t StreamSamples = 30 * SampleRate;
    std::vector<std::vector<float>> streams;
    for (const std::vector<float>& recording : background)
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

std::vector<PhrasePlace> FindBackgroundPeaks(const PhraseModel& model, const std::vector<std::vector<float>>& background,
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

BackgroundTail MeasureTail(const std::vector<PhrasePlace>& peaks)
{
    std::vector<float> maxima;
    maxima.reserve(peaks.size());
    for (const PhrasePlace& peak : peaks)
    {
        maxima.push_back(peak.score);
    }
    BackgroundTail tail = BackgroundTail::Fit(maxima);
    tail.start += UnheardShift;
    return tail;
}

Population MakePopulation(std::vector<PhrasePlace> peaks, double hours)
{
    const std::size_t kept = std::min(Population::MostPeaks, peaks.size());
    std::partial_sort(peaks.begin(), peaks.begin() + static_cast<std::ptrdiff_t>(kept), peaks.end(),
                      [](const PhrasePlace& a, const PhrasePlace& b) { return a.score > b.score; });
    Population population;
    population.hours = hours;
    for (std::size_t i = 0; i < kept; ++i)
    {
        population.peaks.push_back({peaks[i].score, peaks[i].path.counts, std::move(peaks[i].features)});
    }
    return population;
}

} // namespace velox::engine

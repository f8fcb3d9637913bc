#include "engine/listening/PhraseSearch.h"

#include "engine/listening/StreamingNetwork.h"
#include "engine/sound/FeatureStream.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace velox::engine
{

namespace
{

/// Runs the first stage over features and tells `onPath` of each frame at which a path ends.
template <typename OnPath>
void Decode(const PhraseModel& model, std::span<const MelFrame> features, OnPath onPath)
{
    StreamingNetwork network(model.network);
    Decoder decoder(model.states);
    for (const MelFrame& feature : features)
    {
        const Eigen::VectorXf* posteriors = network.Push(feature);
        if (posteriors != nullptr && decoder.Push(posteriors->data()))
        {
            onPath(decoder.FrameCount() - 1, decoder.BestPath());
        }
    }
}

struct Candidate
{
    float score = 0.0F;
    int64_t endFrame = -1;
    PhrasePath path;

    void Offer(float newScore, int64_t frame, const PhrasePath& newPath)
    {
        if (endFrame < 0 || newScore > score)
        {
            score = newScore;
            endFrame = frame;
            path = newPath;
        }
    }

    PhrasePlace Place(const PhraseModel& model, std::span<const MelFrame> features) const
    {
        const auto first = static_cast<std::size_t>(path.startFrame + model.network.LookAhead());
        const auto count = static_cast<std::size_t>(endFrame - path.startFrame + 1);
        const auto part = features.subspan(first, count);
        return {score, path, {part.begin(), part.end()}};
    }
};

} // namespace

std::vector<MelFrame> AnalyseRecording(const FeatureStatistics& statistics, std::span<const float> recording, double warp)
{
    FeatureStream stream(statistics, warp);
    std::vector<MelFrame> features;
    for (std::size_t start = 0; start < recording.size(); start += FrameSize)
    {
        std::array<float, FrameSize> samples{};
        const auto part = recording.subspan(start, std::min(FrameSize, recording.size() - start));
        std::copy(part.begin(), part.end(), samples.begin());
        AnalysedFrame frame;
        if (stream.Push(samples.data(), &frame))
        {
            features.push_back(frame.feature);
        }
    }
    return features;
}

std::optional<PhrasePlace> FindPhrase(const PhraseModel& model, std::span<const float> recording, double warp)
{
    const std::size_t silence = static_cast<std::size_t>(model.network.LookAhead()) * FrameSize;
    std::vector<float> padded(recording.size() + silence, 0.0F);
    std::copy(recording.begin(), recording.end(), padded.begin());
    const std::vector<MelFrame> features = AnalyseRecording(model.statistics, padded, warp);
    Candidate best;
    Decode(model, features, [&](int64_t frame, const PhrasePath& path) { best.Offer(SoftMinimumScore(path), frame, path); });
    if (best.endFrame < 0)
    {
        return std::nullopt;
    }
    return best.Place(model, features);
}

std::vector<PhrasePlace> FindPeaks(const PhraseModel& model, std::span<const float> recording, double stretchSeconds)
{
    const std::vector<MelFrame> features = AnalyseRecording(model.statistics, recording, 1.0);
    const auto stretchFrames = static_cast<int64_t>(std::lround(stretchSeconds * FramesPerSecond));
    std::vector<PhrasePlace> peaks;
    Candidate best;
    int64_t stretchEnd = stretchFrames;
    Decode(model, features, [&](int64_t frame, const PhrasePath& path) {
        while (frame >= stretchEnd)
        {
            if (best.endFrame >= 0)
            {
                peaks.push_back(best.Place(model, features));
            }
            best = {};
            stretchEnd += stretchFrames;
        }
        best.Offer(SoftMinimumScore(path), frame, path);
    });
    if (best.endFrame >= 0)
    {
        peaks.push_back(best.Place(model, features));
    }
    return peaks;
}

} // namespace velox::engine

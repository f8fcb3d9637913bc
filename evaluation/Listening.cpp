#include "evaluation/Listening.h"

#include "engine/base/RandomStream.h"

#include <algorithm>
#include <array>
#include <functional>

namespace velox::evaluation
{

namespace
{

/// Streams that the background is cut into: more than there are threads, and of a fixed number, so that figures do not depend on
/// the machine.
constexpr std::size_t Streams = 8;

void Feed(engine::PhraseDetector* detector, std::span<const float> samples, std::vector<engine::Detection>* found)
{
    for (std::size_t start = 0; start + engine::FrameSize <= samples.size(); start += engine::FrameSize)
    {
        if (const auto detection = detector->Push(samples.data() + start))
        {
            found->push_back(*detection);
        }
    }
}

} // namespace

std::vector<engine::Detection> Listen(const engine::PhraseModel& model, std::span<const float> recording)
{
    engine::PhraseDetector detector(model);
    std::vector<float> samples(recording.begin(), recording.end());
    const auto flush = static_cast<std::size_t>(detector.FlushFrames()) + 1;
    samples.resize((samples.size() / engine::FrameSize + 1 + flush) * engine::FrameSize, 0.0F);
    std::vector<engine::Detection> found;
    Feed(&detector, samples, &found);
    return found;
}

engine::Detection BestIn(const engine::PhraseModel& model, std::span<const float> recording)
{
    engine::Detection best;
    for (const engine::Detection& found : Listen(model, recording))
    {
        best = found.score > best.score ? found : best;
    }
    return best;
}

std::vector<Outcome> ListenToClips(const engine::PhraseModel& model, const std::vector<Clip>& clips, const Condition& condition,
                                   uint64_t listener, engine::WorkerPool* pool)
{
    std::vector<Outcome> outcomes(clips.size());
    pool->Run(static_cast<int>(clips.size()), [&](int part) {
        const auto number = static_cast<std::size_t>(part);
        outcomes[number].clip = &clips[number];
        const uint64_t noise = engine::RandomStream(listener * 1000003U + number).Bits();
        outcomes[number].best = BestIn(model, condition.apply(clips[number].samples, noise));
    });
    return outcomes;
}

std::vector<float> ListenToBackground(const engine::PhraseModel& model, const std::vector<Clip>& background,
                                      engine::WorkerPool* pool)
{
    std::array<std::vector<engine::Detection>, Streams> found;
    pool->Run(static_cast<int>(Streams), [&](int part) {
        engine::PhraseDetector detector(model);
        for (auto number = static_cast<std::size_t>(part); number < background.size(); number += Streams)
        {
            Feed(&detector, background[number].samples, &found[static_cast<std::size_t>(part)]);
        }
    });
    std::vector<float> scores;
    for (const auto& stream : found)
    {
        for (const engine::Detection& detection : stream)
        {
            scores.push_back(detection.score);
        }
    }
    std::sort(scores.begin(), scores.end(), std::greater<>());
    return scores;
}

} // namespace velox::evaluation

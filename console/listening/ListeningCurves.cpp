#include "console/listening/ListeningCurves.h"

#include "engine/enrollment/TakeReview.h"
#include "engine/sound/FeatureStream.h"

#include <algorithm>

namespace velox::console
{

namespace
{

constexpr double SecondsPerFrame = static_cast<double>(engine::FrameSize) / engine::SampleRate;

/// @param framesPerValue  the curve is thinned by, at least 1
ReportCurve Thinned(const std::vector<engine::FrameReview>& frames, float engine::FrameReview::*value, std::size_t framesPerValue)
{
    ReportCurve curve;
    curve.firstSecond = static_cast<double>(engine::FeatureStream::MiddleSample(0)) / engine::SampleRate;
    curve.secondsPerValue = SecondsPerFrame * static_cast<double>(framesPerValue);
    for (std::size_t begin = 0; begin < frames.size(); begin += framesPerValue)
    {
        const auto stretch = std::span(frames).subspan(begin, std::min(framesPerValue, frames.size() - begin));
        curve.values.push_back(std::ranges::max(stretch, {}, value).*value);
    }
    return curve;
}

} // namespace

ListeningCurves CurvesOf(const engine::PhraseModel& model, std::span<const float> samples)
{
    const std::vector<engine::FrameReview> frames = engine::ReviewTake(&model, samples).frames;
    const std::size_t framesPerValue = 1 + frames.size() / MostWaveStretches;
    return {Thinned(frames, &engine::FrameReview::quality, framesPerValue),
            Thinned(frames, &engine::FrameReview::score, framesPerValue)};
}

} // namespace velox::console

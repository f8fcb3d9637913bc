#include "firmware/DspSimulator.h"

#include <algorithm>
#include <cmath>

namespace velox::firmware
{

namespace
{

uint16_t ToQ8(float score)
{
    static_assert(engine::ScoreScale::Most * 256.0F <= 65535.0F);
    return static_cast<uint16_t>(std::lround(score * 256.0F));
}

/// As the microphone's converter gives it.
float Clipped(float sample)
{
    return std::isnan(sample) ? 0.0F : std::clamp(sample, -1.0F, 1.0F);
}

} // namespace

DspSimulator::DspSimulator(const DetectorId& detector, PerformanceCounter performanceCounter, PeakObserver peakObserver)
    : detectorId(detector), counter(performanceCounter), observer(std::move(peakObserver))
{
}

std::optional<PatternRefusal> DspSimulator::SetPattern(std::span<const uint8_t> block)
{
    Disarm();
    auto read = std::make_unique<DspPattern>();
    if (const auto refusal = ReadPattern(block, detectorId, read.get()))
    {
        pattern.reset();
        return refusal;
    }
    const bool keepOld = fault == Fault::StalePattern && HasPattern();
    if (!keepOld)
    {
        pattern = std::move(read);
    }
    return std::nullopt;
}

bool DspSimulator::Arm()
{
    Disarm();
    if (!HasPattern())
    {
        return false;
    }
    listener.emplace(pattern->model);
    armedAt = heard;
    filled = 0;
    return true;
}

void DspSimulator::Disarm()
{
    listener.reset();
}

void DspSimulator::Reset()
{
    Disarm();
    pattern.reset();
}

std::optional<ResultBlock> DspSimulator::Hear(std::span<const float>* audio)
{
    while (IsArmed() && !audio->empty())
    {
        if (!FillFrame(audio))
        {
            continue;
        }
        if (const auto detection = listener->Push(frame.data()))
        {
            if (auto block = Judge(*detection))
            {
                return block;
            }
        }
    }
    Skip(audio);
    return std::nullopt;
}

int64_t DspSimulator::Latency() const
{
    constexpr int64_t BegunFrame = 1;
    return listener ? (listener->FlushFrames() + BegunFrame) * static_cast<int64_t>(engine::FrameSize) : 0;
}

/// @return whether the frame is full
bool DspSimulator::FillFrame(std::span<const float>* audio)
{
    const auto part = audio->first(std::min(audio->size(), frame.size() - filled));
    std::transform(part.begin(), part.end(), frame.begin() + static_cast<std::ptrdiff_t>(filled), Clipped);
    filled += part.size();
    heard += static_cast<int64_t>(part.size());
    *audio = audio->subspan(part.size());
    if (filled < frame.size())
    {
        return false;
    }
    filled = 0;
    return true;
}

/// What is heard while nobody listens.
void DspSimulator::Skip(std::span<const float>* audio)
{
    heard += static_cast<int64_t>(audio->size());
    *audio = {};
}

std::optional<ResultBlock> DspSimulator::Judge(engine::Detection detection)
{
    detection.startSample += armedAt;
    detection.endSample += armedAt;
    const uint16_t score = ToQ8(detection.score);
    const bool passed = score >= pattern->threshold;
    if (observer)
    {
        observer({detection, score, passed});
    }
    if (!passed)
    {
        return std::nullopt;
    }
    Disarm();
    if (fault == Fault::Reset)
    {
        Reset();
        return std::nullopt;
    }
    return ResultBlock(detectorId, {counter.At(detection.startSample), counter.At(detection.endSample), score}, fault);
}

} // namespace velox::firmware

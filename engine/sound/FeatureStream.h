#pragma once

#include "engine/sound/ChannelNormalizer.h"
#include "engine/sound/FrontEnd.h"

namespace velox::engine
{

/// One analysed frame.
struct AnalysedFrame
{
    MelFrame logMel;
    MelFrame feature;        ///< normalised, for the network
    float aboveFloor = 0.0F; ///< level above the tracked noise floor, in natural-logarithm units

    bool IsSpeech() const
    {
        return NoiseFloor::IsSpeech(aboveFloor);
    }
};

/// Audio in, normalised frames out. Everything that the engine hears goes through here, in training as in use.
class FeatureStream
{
public:
    explicit FeatureStream(const FeatureStatistics& statistics, double warp = 1.0) : frontEnd(warp), normalizer(statistics)
    {
    }

    /// @param samples  FrameSize samples in [-1, 1]
    /// @return false while the first window is not full
    bool Push(const float* samples, AnalysedFrame* frame)
    {
        if (!frontEnd.Push(samples, &frame->logMel))
        {
            return false;
        }
        frame->aboveFloor = floor.Update(MeanLevel(frame->logMel));
        normalizer.Apply(frame->logMel, frame->aboveFloor, &frame->feature);
        return true;
    }

    /// Middle of the window of a frame, in samples from the stream's start.
    static int64_t MiddleSample(int64_t frame)
    {
        return (frame + static_cast<int64_t>(FrontEnd::FirstFrame)) * static_cast<int64_t>(FrameSize) -
               static_cast<int64_t>(WindowSize / 2);
    }

private:
    FrontEnd frontEnd;
    NoiseFloor floor;
    ChannelNormalizer normalizer;
};

} // namespace velox::engine

#include "engine/sound/FrontEnd.h"

#include <algorithm>

namespace velox::engine
{

bool FrontEnd::Push(const float* samples, MelFrame* logMel)
{
    std::copy(history.begin() + FrameSize, history.end(), history.begin());
    float* const fresh = history.data() + (WindowSize - FrameSize);
    for (std::size_t i = 0; i < FrameSize; ++i)
    {
        fresh[i] = samples[i] - PreEmphasis * lastSample;
        lastSample = samples[i];
    }
    if (pushes + 1 < FirstFrame)
    {
        ++pushes;
        return false;
    }

    std::array<float, PowerSpectrum::Bins> power;
    spectrum.Compute(history.data(), power.data());
    filterbank.Apply(power.data(), logMel);
    return true;
}

std::vector<MelFrame> LogMelFrames(std::span<const float> recording)
{
    std::vector<MelFrame> frames;
    FrontEnd frontEnd;
    MelFrame frame;
    for (std::size_t start = 0; start + FrameSize <= recording.size(); start += FrameSize)
    {
        if (frontEnd.Push(recording.data() + start, &frame))
        {
            frames.push_back(frame);
        }
    }
    return frames;
}

} // namespace velox::engine

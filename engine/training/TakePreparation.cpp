#include "engine/training/TakePreparation.h"

#include "engine/sound/Endpointing.h"
#include "engine/sound/FrontEnd.h"

#include <algorithm>

namespace velox::engine
{

namespace
{

constexpr std::size_t SilenceFrames = 30; // put around every take: 0.3 s

std::string_view FaultText(TakeFault fault)
{
    switch (fault)
    {
    case TakeFault::NoSpeech:
        return "there is no speech in it";
    case TakeFault::TooQuiet:
        return "it is too quiet";
    case TakeFault::Clipped:
        return "it is clipped";
    case TakeFault::CutAtStart:
        return "it starts in the middle of speech";
    case TakeFault::CutAtEnd:
        return "it ends in the middle of speech";
    case TakeFault::TwoPhrases:
        return "the phrase is in it twice";
    case TakeFault::None:
        break;
    }
    return "";
}

bool IsTight(TakeFault fault)
{
    return fault == TakeFault::CutAtStart || fault == TakeFault::CutAtEnd;
}

/// Where the speech lies in a take with silence around it. Its own noise is the floor; only where it is cut tightly is it the
/// silence.
Endpoints FindPaddedEndpoints(std::span<const float> samples, std::span<const MelFrame> paddedLogMel,
                              std::span<const float> padded)
{
    Endpoints endpoints = FindEndpoints(LogMelFrames(samples), samples);
    if (IsTight(endpoints.fault) || endpoints.fault == TakeFault::NoSpeech)
    {
        return FindEndpoints(paddedLogMel, padded);
    }
    endpoints.begin += SilenceFrames;
    endpoints.end += SilenceFrames;
    return endpoints;
}

} // namespace

std::vector<MelFrame> PreparedTake::PhraseLogMel() const
{
    return {logMel.begin() + static_cast<std::ptrdiff_t>(begin), logMel.begin() + static_cast<std::ptrdiff_t>(end)};
}

std::span<const float> PreparedTake::PhraseSamples() const
{
    const std::size_t first = begin * FrameSize;
    return std::span(samples).subspan(first, std::min(samples.size(), end * FrameSize + WindowSize) - first);
}

std::vector<PreparedTake> PrepareTakes(const std::vector<PhraseTake>& takes, std::vector<std::string>* warnings)
{
    std::vector<PreparedTake> prepared;
    for (const PhraseTake& take : takes)
    {
        PreparedTake one;
        one.samples = Pad(take.samples);
        one.logMel = LogMelFrames(one.samples);
        one.voice = take.voice;
        one.weight = take.weight;
        const Endpoints endpoints = FindPaddedEndpoints(take.samples, one.logMel, one.samples);
        if (endpoints.fault != TakeFault::None && !IsTight(endpoints.fault))
        {
            warnings->push_back(take.name + " is left out: " + std::string(FaultText(endpoints.fault)) + ".");
            continue;
        }
        one.begin = endpoints.begin;
        one.end = endpoints.end;
        prepared.push_back(std::move(one));
    }
    return prepared;
}

std::vector<float> Pad(std::span<const float> samples)
{
    constexpr std::size_t Silence = SilenceFrames * FrameSize;
    std::vector<float> padded(Silence, 0.0F);
    padded.insert(padded.end(), samples.begin(), samples.end());
    padded.resize(padded.size() + Silence, 0.0F);
    return padded;
}

} // namespace velox::engine

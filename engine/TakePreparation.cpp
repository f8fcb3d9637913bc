#include "TakePreparation.h"

#include "Endpointing.h"
#include "FrontEnd.h"

#include <algorithm>

namespace velox::engine
{

namespace
{

constexpr double SilenceSeconds = 0.3; // put around every take

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
        one.logMel = LogMelOf(one.samples);
        one.weight = take.weight;
        const Endpoints endpoints = FindEndpoints(one.logMel, one.samples);
        if (endpoints.fault != TakeFault::None && endpoints.fault != TakeFault::CutAtStart &&
            endpoints.fault != TakeFault::CutAtEnd)
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
    const auto silence = static_cast<std::size_t>(SilenceSeconds * SampleRate);
    std::vector<float> padded(silence, 0.0F);
    padded.insert(padded.end(), samples.begin(), samples.end());
    padded.resize(padded.size() + silence, 0.0F);
    return padded;
}

std::vector<MelFrame> LogMelOf(std::span<const float> samples)
{
    FrontEnd frontEnd;
    std::vector<MelFrame> frames;
    MelFrame frame;
    for (std::size_t start = 0; start + FrameSize <= samples.size(); start += FrameSize)
    {
        if (frontEnd.Push(samples.data() + start, &frame))
        {
            frames.push_back(frame);
        }
    }
    return frames;
}

} // namespace velox::engine

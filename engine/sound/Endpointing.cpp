#include "engine/sound/Endpointing.h"

#include "engine/sound/ChannelNormalizer.h"
#include "engine/sound/FrontEnd.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <vector>

namespace velox::engine
{

namespace
{

/// A stop closure: sounds this close belong together, however short they are. 150 ms.
constexpr std::size_t LongestClosure = 15;
/// Speech is at least this long: 100 ms.
constexpr std::size_t LeastSpeech = 10;
/// The take's loudness is the level that this many frames reach, which no click does: 100 ms.
constexpr std::size_t LoudFrames = LeastSpeech;
/// A phrase may have shorter pauses than this: 500 ms.
constexpr std::size_t LeastPause = 50;
/// Two phrases are one phrase said twice when the shorter has this share of the longer.
constexpr double SimilarLength = 0.7;
/// Share of a take's frames that lie on the floor or below.
constexpr double FloorShare = 0.1;
/// The floor lies no deeper than this below the loudness: 50 dB. Digital silence would be deeper than any room.
constexpr float DeepestFloor = 11.5F;
/// Speech begins at this share of the way from the floor to the loudness, and is under way at that one.
constexpr float SpeechShare = 0.25F;
constexpr float UnderWayShare = 0.5F;

struct Stretch
{
    std::size_t begin = 0;
    std::size_t end = 0;

    std::size_t Length() const
    {
        return end - begin;
    }
};

struct TakeLevels
{
    std::vector<float> frames; ///< mean log-mel energies
    float floor = 0.0F;
    float loudness = 0.0F;

    float Above(float share) const
    {
        return floor + std::max(NoiseFloor::SpeechMargin, share * (loudness - floor));
    }
};

/// @param logMel  at least LoudFrames
TakeLevels MeasureLevels(std::span<const MelFrame> logMel)
{
    TakeLevels levels;
    levels.frames.resize(logMel.size());
    std::transform(logMel.begin(), logMel.end(), levels.frames.begin(), MeanLevel);

    std::vector<float> sorted = levels.frames;
    std::sort(sorted.begin(), sorted.end(), std::greater<>());
    const auto floorRank = static_cast<std::size_t>(FloorShare * static_cast<double>(sorted.size() - 1));
    levels.loudness = sorted[LoudFrames - 1];
    levels.floor = std::max(sorted[sorted.size() - 1 - floorRank], levels.loudness - DeepestFloor);
    return levels;
}

std::vector<Stretch> FramesAbove(const std::vector<float>& levels, float threshold)
{
    std::vector<Stretch> stretches;
    for (std::size_t t = 0; t < levels.size(); ++t)
    {
        if (levels[t] <= threshold)
        {
            continue;
        }
        if (stretches.empty() || stretches.back().end != t)
        {
            stretches.push_back({t, t});
        }
        stretches.back().end = t + 1;
    }
    return stretches;
}

/// Joins neighbours with fewer frames than `pause` between them.
std::vector<Stretch> Join(const std::vector<Stretch>& stretches, std::size_t pause)
{
    std::vector<Stretch> joined;
    for (const Stretch& stretch : stretches)
    {
        if (!joined.empty() && stretch.begin - joined.back().end < pause)
        {
            joined.back().end = stretch.end;
        }
        else
        {
            joined.push_back(stretch);
        }
    }
    return joined;
}

/// Stretches of speech, the longest first.
std::vector<Stretch> FindSpeech(const TakeLevels& levels)
{
    std::vector<Stretch> sounds = Join(FramesAbove(levels.frames, levels.Above(SpeechShare)), LongestClosure);
    std::erase_if(sounds, [](const Stretch& sound) { return sound.Length() < LeastSpeech; });
    std::vector<Stretch> speech = Join(sounds, LeastPause);
    std::stable_sort(speech.begin(), speech.end(), [](const Stretch& a, const Stretch& b) { return a.Length() > b.Length(); });
    return speech;
}

/// The samples under the windows of a stretch's frames.
std::span<const float> SamplesOf(const Stretch& stretch, std::span<const float> samples)
{
    const std::size_t begin = stretch.begin * FrameSize;
    const std::size_t end = std::min((stretch.end - 1 + FrontEnd::FirstFrame) * FrameSize, samples.size());
    return begin < end ? samples.subspan(begin, end - begin) : std::span<const float>();
}

bool IsAtFullScale(float sample)
{
    constexpr float FullScale = 0.999F;
    return std::abs(sample) >= FullScale;
}

/// At full scale, and so is a neighbour.
bool IsClipped(std::span<const float> samples, std::size_t i)
{
    return IsAtFullScale(samples[i]) &&
           ((i > 0 && IsAtFullScale(samples[i - 1])) || (i + 1 < samples.size() && IsAtFullScale(samples[i + 1])));
}

double LevelOf(std::span<const float> samples)
{
    double energy = 1e-20;
    for (const float sample : samples)
    {
        energy += static_cast<double>(sample) * static_cast<double>(sample);
    }
    return 10.0 * std::log10(energy / static_cast<double>(std::max<std::size_t>(samples.size(), 1)));
}

TakeFault Judge(const std::vector<Stretch>& speech, const TakeLevels& levels, double level, double clippedShare)
{
    const Stretch& longest = speech.front();
    const float underWay = levels.Above(UnderWayShare);
    if (level < QuietLevel)
    {
        return TakeFault::TooQuiet;
    }
    if (clippedShare > MostClippedShare)
    {
        return TakeFault::Clipped;
    }
    if (longest.begin == 0 && levels.frames.front() > underWay)
    {
        return TakeFault::CutAtStart;
    }
    if (longest.end == levels.frames.size() && levels.frames.back() > underWay)
    {
        return TakeFault::CutAtEnd;
    }
    if (speech.size() > 1 && static_cast<double>(speech[1].Length()) >= SimilarLength * static_cast<double>(longest.Length()))
    {
        return TakeFault::TwoPhrases;
    }
    return TakeFault::None;
}

} // namespace

Endpoints FindEndpoints(std::span<const MelFrame> logMel, std::span<const float> samples)
{
    Endpoints endpoints;
    endpoints.clippedSamples = CountClipped(samples);
    if (logMel.size() < LoudFrames)
    {
        return endpoints;
    }
    const TakeLevels levels = MeasureLevels(logMel);
    const std::vector<Stretch> speech = FindSpeech(levels);
    if (speech.empty())
    {
        return endpoints;
    }

    const Stretch& longest = speech.front();
    const std::span<const float> spoken = SamplesOf(longest, samples);
    endpoints.level = LevelOf(spoken);
    const double clippedShare =
        static_cast<double>(CountClipped(spoken)) / static_cast<double>(std::max<std::size_t>(spoken.size(), 1));
    endpoints.fault = Judge(speech, levels, endpoints.level, clippedShare);
    endpoints.begin = longest.begin - std::min(EndpointPadding, longest.begin);
    endpoints.end = std::min(longest.end + EndpointPadding, logMel.size());
    return endpoints;
}

std::size_t CountClipped(std::span<const float> samples)
{
    std::size_t count = 0;
    for (std::size_t i = 0; i < samples.size(); ++i)
    {
        count += static_cast<std::size_t>(IsClipped(samples, i));
    }
    return count;
}

std::optional<std::size_t> FirstClipped(std::span<const float> samples)
{
    for (std::size_t i = 0; i < samples.size(); ++i)
    {
        if (IsClipped(samples, i))
        {
            return i;
        }
    }
    return std::nullopt;
}

} // namespace velox::engine

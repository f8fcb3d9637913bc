#pragma once

#include "engine/sound/MelFilterbank.h"

#include <cstddef>
#include <optional>
#include <span>

namespace velox::engine
{

/// Why a take is of no use.
enum class TakeFault
{
    None,
    NoSpeech,
    TooQuiet,   ///< the speech lies below QuietLevel
    Clipped,    ///< more than MostClippedShare of the speech's samples
    CutAtStart, ///< speech is under way in the first frame
    CutAtEnd,   ///< speech is under way in the last frame
    TwoPhrases, ///< two stretches of speech of similar length with a pause between them
};

/// Level of speech below which a take is too quiet, in dB relative to a full-scale square wave (a full-scale sine has -3 dB).
inline constexpr double QuietLevel = -50.0;
/// Share of the speech's samples that may be clipped.
inline constexpr double MostClippedShare = 0.003;

/// Frames kept on either side of the speech: 50 ms.
inline constexpr std::size_t EndpointPadding = 5;

/// Where the speech of a take lies.
struct Endpoints
{
    TakeFault fault = TakeFault::NoSpeech; ///< the first that holds, in the order of TakeFault
    std::size_t begin = 0;                 ///< first frame of the speech, padding included
    std::size_t end = 0;                   ///< one past the last frame of the speech, padding included
    double level = 0.0;                    ///< of the speech, as QuietLevel counts; 0 without speech
    std::size_t clippedSamples = 0;        ///< in the whole take
};

/// Finds the speech of a take by its level against the take's floor (after Rabiner and Sambur, "An algorithm for determining the
/// endpoints of isolated utterances", 1975). Sounds shorter than 100 ms that stand alone, such as clicks, are left out.
///
/// @param logMel   the take's frames as FrontEnd gives them without warp
/// @param samples  the take, in [-1, 1]
Endpoints FindEndpoints(std::span<const MelFrame> logMel, std::span<const float> samples);

/// Samples at full scale that have a neighbour at full scale: a lone peak is not clipped.
std::size_t CountClipped(std::span<const float> samples);

/// The first of them.
std::optional<std::size_t> FirstClipped(std::span<const float> samples);

} // namespace velox::engine

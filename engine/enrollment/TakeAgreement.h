#pragma once

#include "engine/enrollment/SpeakerAdaptation.h"

#include <optional>
#include <vector>

namespace velox::engine
{

/// Most decibels between the loudest and the quietest take of an enrollment: from a loud voice to a whisper it is 20.
inline constexpr double MostLevelDifference = 25.0;

/// How much each take sounds like a user who is learned from the others alone, rather than like everybody: SpeakerRatio. Takes of
/// one voice have mostly more than 1.
/// @return nothing for fewer than two takes
std::vector<float> RatiosToOthers(const GenericSpeakers& generic, std::span<const PhraseFrames> takes);

/// The same of every two takes: how much each sounds like a user who is learned from the other alone, the mean of both ways.
/// @return symmetric; the diagonal is 0
Eigen::MatrixXf PairRatios(const GenericSpeakers& generic, std::span<const PhraseFrames> takes);

/// The take that is least like the others when it sounds more like everybody than like a user who is learned from the others
/// alone: another speaker's, or another phrase's. Takes of one voice are far from it, clean or not. Where everybody was learned
/// from these very takes, all of them lie somewhat on everybody's side, and none is unlike.
/// @return its number; nothing when all are alike
std::optional<std::size_t> UnlikeInVoice(const GenericSpeakers& generic, std::span<const PhraseFrames> takes);

/// The take whose level is farthest from the one in the middle, when levels lie too far apart.
/// @param levels  of the takes' speech, in decibels
/// @return its number; nothing when all are alike
std::optional<std::size_t> UnlikeInLevel(std::span<const double> levels);

} // namespace velox::engine

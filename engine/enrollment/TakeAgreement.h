#pragma once

#include "engine/enrollment/SpeakerAdaptation.h"

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

/// Whether every take is like the others: none sounds more like everybody than like a user who is learned from the others alone.
/// Another speaker's take is unlike, and so is another phrase's; takes of one voice are far from it, clean or not.
bool VoicesAgree(const GenericSpeakers& generic, std::span<const PhraseFrames> takes);

/// @param levels  of the takes' speech, in decibels
bool LevelsAgree(std::span<const double> levels);

} // namespace velox::engine

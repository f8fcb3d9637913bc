#pragma once

#include <span>

namespace velox::engine
{

/// Root mean square of the parts of a recording that are not pauses: of the frames that lie less than 15.9 dB below what results
/// (after ITU-T P.56, "Objective measurement of active speech level", method B). Silence around a word does not change it.
///
/// @return 0 for silence; what is no full frame at the end is left out, unless it is all there is
double SpeechLevel(std::span<const float> samples);

} // namespace velox::engine

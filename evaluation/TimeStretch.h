#pragma once

#include <span>
#include <vector>

namespace velox::evaluation
{

/// Plays a recording faster or slower at the same pitch: overlapping windows, each shifted to where it fits best to the one
/// before (WSOLA: Verhelst and Roelands, "An overlap-add technique based on waveform similarity", 1993).
/// @param tempo  above 1 is faster
std::vector<float> ChangeTempo(std::span<const float> recording, double tempo);

} // namespace velox::evaluation

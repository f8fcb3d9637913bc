#pragma once

#include <span>
#include <vector>

namespace velox::engine
{

/// Plays a signal faster or slower, pitch included, by interpolation with a windowed sinc that also keeps what would fold back
/// out (Smith and Gossett, "A flexible sampling-rate conversion method", 1984).
///
/// @param speed  above 1 is faster; 0.5 to 2
/// @return samples / speed samples, rounded down; sample i stands where the signal has i * speed
std::vector<float> ChangeSpeed(std::span<const float> signal, double speed);

} // namespace velox::engine

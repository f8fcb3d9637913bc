#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace velox::engine
{

/// Filters a signal with a long response: block-wise products of spectra, added where they overlap (Stockham, "High-speed
/// convolution and correlation", 1966).
///
/// @param response  at least one value
/// @param delay     of the response, taken out of the result; less than the response's length
/// @return as many samples as the signal has
std::vector<float> FilterSignal(std::span<const float> signal, std::span<const float> response, std::size_t delay = 0);

} // namespace velox::engine

#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace velox::console
{

// How numbers, times and lists read, everywhere alike.

/// "1 take", "3 takes"; the plural is made with an s where none is given.
std::string Counted(std::size_t number, std::string_view one, std::string_view many = {});

/// A moment in a recording: "0:07.25", "1:02:03.40".
std::string ClockText(double seconds, int decimals = 2);

/// A stretch of a recording: "0.52 s to 1.80 s", from a minute on "1:02.5 to 1:04.0"; a moment when end is begin.
std::string PlaceText(double begin, double end);

/// "12.3 s", from six minutes on "0.52 h".
std::string DurationText(double seconds);

/// "a, b, c".
std::string Joined(std::span<const std::string> words);

} // namespace velox::console

#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace velox::evaluation
{

/// What is done to a clip before it is listened to.
struct Condition
{
    std::string name;
    /// @param clip    without silence around it
    /// @param number  of the clip, so that each has noise of its own
    std::function<std::vector<float>(std::span<const float> clip, uint64_t number)> apply;
};

/// Clean; babble, pink and white noise at 20, 10 and 5 dB; a room with a reverberation time of 0.45 s.
/// @param talkers  what babble is made of; must outlive the conditions
std::vector<Condition> PlaceConditions(const std::vector<std::vector<float>>& talkers);

/// Telephone band, other tempos, other levels, other speech before the phrase.
/// @param talkers  whose speech comes before; must outlive the conditions
std::vector<Condition> UserConditions(const std::vector<std::vector<float>>& talkers);

/// Half a second of silence before and behind.
std::vector<float> WithSilence(std::span<const float> clip);

} // namespace velox::evaluation

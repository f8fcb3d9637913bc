#pragma once

#include "evaluation/Report.h"

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
    /// @param clip   without silence around it
    /// @param noise  seed of all that is drawn, so that each clip of each listener has noise of its own
    std::function<std::vector<float>(std::span<const float> clip, uint64_t noise)> apply;
    Goal predefined = {}; ///< of the misses of the natural voices that speak the phrase's language, in percent
    Goal user = {};       ///< of a natural user's misses
};

/// The clip between silence, to which the others are compared.
Condition CleanCondition();

/// Clean; noise at 20, 10 and 5 dB, half a second of it before the clip; at 10 dB also noise that begins with the clip, and noise
/// that was there three seconds before; a room; levels; tempos; bands; what comes before the clip.
/// @param talkers  what babble and speech before the clip are made of; must outlive the conditions
std::vector<Condition> Conditions(const std::vector<std::vector<float>>& talkers);

/// Half a second of silence before and behind.
std::vector<float> WithSilence(std::span<const float> clip);

} // namespace velox::evaluation

#pragma once

#include "engine/training/LanguageMaterial.h"
#include "engine/training/LanguageOptions.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace velox::engine
{

/// What a language element of the configuration file names, as bytes and numbers.
struct LanguageModels
{
    std::vector<uint8_t> acousticModel;
    std::vector<uint8_t> znormPopulation;
    std::vector<uint8_t> keyphraseModel;
    std::vector<uint8_t> firmwareModel;
    double preDefinedThreshold = 0.0; ///< ScoreScale
    double userDefinedThreshold = 0.0;
    double backgroundHours = 0.0;      ///< that the thresholds rest on
    std::vector<float> heldOutScores;  ///< ScoreScale, of each usable take, by a network that had not heard its voice
    std::vector<std::string> warnings; ///< takes that were left out, and what accuracy to expect from little material
};

/// Learns a phrase from recordings alone. Every figure comes from the material given.
///
/// @return nothing when it was cancelled
/// @throws std::invalid_argument when there are fewer than two usable takes, or less than a minute of background
std::optional<LanguageModels> TrainLanguage(const LanguageMaterial& material, const LanguageOptions& options);

/// A key-phrase model judges one utterance, not an hour of background: it is this much more lenient than the firmware's.
inline constexpr double TakeLeniency = 4.0; ///< times the false alarms

} // namespace velox::engine

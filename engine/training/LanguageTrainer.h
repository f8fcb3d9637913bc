#pragma once

#include "engine/models/AcousticModel.h"
#include "engine/training/NetworkTrainer.h"

#include <string>

namespace velox::engine
{

/// One recording of the phrase.
struct PhraseTake
{
    std::vector<float> samples; ///< 16 kHz, in [-1, 1]
    std::string name;           ///< for the report, for example the file's
    std::string voice;          ///< who says it; takes of one voice share it
    float weight = 1.0F;        ///< how often it is drawn in training, for rare kinds of voice
};

/// Recordings that a language is learned from.
struct LanguageMaterial
{
    std::vector<PhraseTake> takes;
    std::vector<std::vector<float>> background; ///< other speech and sounds, no phrase
};

struct LanguageOptions
{
    double falseAlarmsPerHour = 0.5;
    int copies = 10;          ///< noisy copies of each take
    int backgroundCopies = 2; ///< noisy copies of the background
    int batches = 4000;
    uint64_t seed = 1;
    int threads = 1; ///< the result does not depend on it
    TrainingProgress progress = [](double) {
        return true;
    };
};

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
    std::vector<std::string> warnings; ///< takes that were left out, and what accuracy to expect from little material
};

/// Learns a phrase from recordings alone. Every figure comes from the material given.
///
/// @return nothing when it was cancelled
/// @throws std::invalid_argument when there are fewer than two usable takes, or less than a minute of background
std::optional<LanguageModels> TrainLanguage(const LanguageMaterial& material, const LanguageOptions& options);

/// A key-phrase model judges one utterance, not an hour of background: it is this much more lenient than the firmware's, in the
/// decoder's score (a fourfold rate of false alarms).
float TakeLeniency();

} // namespace velox::engine

#pragma once

#include "engine/sound/MelFilterbank.h"

namespace velox::engine
{

/// Fixed statistics of the features, learned from training material.
struct FeatureStatistics
{
    MelFrame startMean{}; ///< mean of the louder half of background frames: where the running mean starts
    MelFrame mean{};      ///< of the features after the running mean was taken off
    MelFrame deviation{}; ///< of the same
};

/// Follows the level between speech, in natural-logarithm units of the mean log-mel energy: fast down, slowly up.
class NoiseFloor
{
public:
    /// How far above the floor a frame is speech: 7.8 dB.
    static constexpr float SpeechMargin = 1.8F;

    /// @return by how much this frame lies above the floor that it leaves behind; 0 for the first
    float Update(float level);

    static bool IsSpeech(float aboveFloor)
    {
        return aboveFloor > SpeechMargin;
    }

    static float Decibels(float aboveFloor)
    {
        constexpr float DecibelsPerFactorE = 4.342945F;
        return aboveFloor * DecibelsPerFactorE;
    }

private:
    bool started = false;
    float floor = 0.0F;
};

/// Takes a running mean off each channel, which only speech moves, and scales to the training's mean and deviation (streaming
/// form of cepstral mean normalisation: Atal 1974; Viikki and Laurila, "Cepstral domain segmental feature vector normalization",
/// 1998).
class ChannelNormalizer
{
public:
    explicit ChannelNormalizer(const FeatureStatistics& statistics);

    /// @param aboveFloor  the frame's level above the noise floor (NoiseFloor)
    void Apply(const MelFrame& logMel, float aboveFloor, MelFrame* feature);

private:
    static constexpr float StartWeight = 50.0F;
    static constexpr float MostWeight = 300.0F;

    FeatureStatistics statistics;
    MelFrame runningMean;
    float weight = StartWeight;
};

/// Mean of a frame's channels: its level.
float MeanLevel(const MelFrame& logMel);

} // namespace velox::engine

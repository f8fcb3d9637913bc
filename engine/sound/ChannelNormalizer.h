#pragma once

#include "engine/sound/MelFilterbank.h"

namespace velox::engine
{

/// Fixed statistics of the features, learned from training material.
struct FeatureStatistics
{
    MelFrame startShape{}; ///< mean of the louder half of background frames, less its level: the running mean's first shape
    MelFrame mean{};       ///< of the features after the running mean was taken off
    MelFrame deviation{};  ///< of the same
};

/// Follows the level between speech, in natural-logarithm units of the mean log-mel energy: fast down, slowly up.
class NoiseFloor
{
public:
    /// How far above the floor a frame is speech: 7.8 dB.
    static constexpr float SpeechMargin = 1.8F;
    /// What lies below the least noise that 16 bits can hold is digital silence, which tells nothing of the noise to come.
    static constexpr float LeastLevel = -16.0F;

    /// @return by how much this frame lies above the floor that it leaves behind; 0 for the first ones and for digital silence
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
    /// Frames at the start that the floor follows: the first windows after digital silence are partly empty.
    static constexpr int SettlingFrames = 3;

    int settled = 0;
    float floor = 0.0F;
};

/// Takes a running mean off each channel, which only speech moves, and scales to the training's mean and deviation (streaming
/// form of cepstral mean normalisation: Atal 1974; Viikki and Laurila, "Cepstral domain segmental feature vector normalization",
/// 1998).
///
/// Nothing depends on the gain of the audio, as long as speech lies above LeastMean: before speech was heard the mean is a fixed
/// shape at a level that is guessed from the peaks so far and the noise floor, and what lies too far below the mean is cut off.
class ChannelNormalizer
{
public:
    /// Least level that the mean is guessed at: speech of about -58 dB.
    static constexpr float LeastMean = -12.0F;
    /// How far above the noise floor the mean is guessed at least: 13 dB.
    static constexpr float LeastRise = 3.0F;
    /// Frames after digital silence in which the floor is not believed: what is heard may be speech.
    static constexpr int DoubtedFrames = 20;
    /// How far the mean level of speech lies below its peaks: between 1.8 and 2.9 with every kind of voice.
    static constexpr float PeakAboveMean = 2.0F;
    /// How far below the peaks a frame still moves the mean: 22 dB.
    static constexpr float SpeechRange = 5.0F;
    /// What stands this far above the frames that moved the mean shows that these were no speech: 20 dB.
    static constexpr float NewSpeechRise = 4.6F;
    /// How far below the mean a channel is heard: 35 dB.
    static constexpr float Depth = 8.0F;

    explicit ChannelNormalizer(const FeatureStatistics& statistics);

    /// @param aboveFloor  the frame's level above the noise floor (NoiseFloor)
    void Apply(const MelFrame& logMel, float aboveFloor, MelFrame* feature);

private:
    static constexpr float StartWeight = 50.0F;
    static constexpr float MostWeight = 300.0F;

    void FollowPeaks(float level);
    float GuessLevel(float floor) const;
    void Learn(const MelFrame& logMel, float level);
    void Forget();

    FeatureStatistics statistics;
    std::array<float, 4> recentLevels; ///< of the last frames: a click does not fill them
    std::size_t frames = 0;
    int doubted = 0;            ///< frames to come in which the floor is not believed
    float slowPeak = LeastMean; ///< of what lasts; falls by 1.3 dB a second
    float fastPeak = LeastMean; ///< of single frames; falls within some frames

    // The running mean is guessShare times the guess, and the rest learned.
    float guessShare = 1.0F;
    MelFrame learned{};
    float learnedLevel = 0.0F;
    float weight = StartWeight;
};

/// Mean of a frame's channels: its level.
float MeanLevel(const MelFrame& logMel);

} // namespace velox::engine

#pragma once

#include "engine/base/RandomStream.h"
#include "engine/enrollment/Room.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace velox::engine
{

/// A stretch of background that babble is made of.
struct BackgroundPiece
{
    std::size_t recording = 0;
    std::size_t start = 0; ///< sample; the piece goes on in the next recording when this one's end comes, as people talk on
};

/// What a telephone or a small loudspeaker lets through.
struct Band
{
    double low = 0.0;  ///< Hz; 0 for no lower edge
    double high = 0.0; ///< Hz
};

struct NoisePlan
{
    double signalToNoise = 10.0;         ///< dB, of the speech (SpeechLevel) over the noise
    std::vector<BackgroundPiece> babble; ///< equally loud; empty for coloured noise
    std::size_t quiet = 0;               ///< samples of the recording, behind its lead, before the noise begins; 0: it was there
    double colour = 0.0;                 ///< pole of the coloured noise, 0 for white
    uint64_t seed = 0;                   ///< of the coloured noise
};

/// What was heard before the recording: a stream that speech, or digital silence, has moved already.
struct Lead
{
    std::size_t frames = 0;
    std::optional<BackgroundPiece> speech; ///< without: digital silence
    double level = 0.0;                    ///< of this speech over that of the recording, dB
};

/// Silence within the recording: people pause between words where no training voice did.
struct Pause
{
    std::size_t start = 0; ///< frame of the recording before which it is put
    std::size_t frames = 0;
};

/// What is done to a recording, in this order, to make a copy of it that sounds as if another voice had said it in another place
/// (multi-condition training: Lippmann, Martin and Paul 1987; speed: Ko et al., "Audio augmentation for speech recognition",
/// 2015; rooms: Ko et al. 2017; warp: Jaitly and Hinton, "Vocal tract length perturbation improves speech recognition", 2013).
struct AugmentationPlan
{
    std::optional<Pause> pause; ///< for who knows where the words end; DrawPlan draws none
    std::optional<Lead> lead;
    double speed = 1.0; ///< above 1 is faster; pitch and formants go with it
    double warp = 1.0;  ///< for the MelFilterbank that the copy is analysed with: the formants come out at speed / warp
    double tilt = 0.0;  ///< a in 1 + a / z
    std::optional<Band> band;
    std::optional<Room> room;
    std::optional<NoisePlan> noise;
    std::size_t offset = 0; ///< samples left out at the start, fewer than a frame: where the frames lie is chance
    double level = -26.0;   ///< of the copy's speech (SpeechLevel), noise included, dB relative to full scale
};

struct Range
{
    double least;
    double most;
};

/// What plans are drawn from. Chances are shares of the copies; the rest is without.
struct AugmentationRanges
{
    double leadChance = 0.4;
    int64_t fewestLeadFrames = 30;
    int64_t mostLeadFrames = 150;
    double leadSpeechChance = 0.6; ///< of the copies with a lead
    Range leadLevel{-10.0, 10.0};
    double tempoChance = 0.7;
    Range tempo{0.77, 1.33};   ///< the copy's speed
    Range formant{0.85, 1.18}; ///< factor of the formants' frequencies, whatever the tempo
    double tiltChance = 0.75;
    Range tilt{-0.5, 0.5};
    double bandChance = 0.25;
    double lowerEdgeChance = 0.6; ///< of the copies with a band
    Range lowerEdge{150.0, 400.0};
    Range upperEdge{3300.0, 4800.0};
    double roomChance = 0.4;
    Range reverberationTime{0.15, 0.8};
    Range directToReverberant{-2.0, 10.0};
    double noiseChance = 0.9;
    Range signalToNoise{0.0, 35.0};
    double suddenChance = 0.25; ///< of the copies with noise: it begins with the recording or in its first half second
    double babbleChance = 0.65; ///< of the copies with noise
    int64_t fewestPieces = 4;
    int64_t mostPieces = 9;
    Range colour{0.0, 0.97};
    Range level{-38.0, -16.0};
};

/// For the training of a phrase.
inline constexpr AugmentationRanges TrainingRanges{};
/// For the takes of one user: the voice stays as it is, but may come faster or slower, and through a telephone. Three
/// takes in a row are more alike than what comes later.
inline constexpr AugmentationRanges EnrollmentRanges{.leadChance = 0.0,
                                                     .tempoChance = 0.5,
                                                     .formant = {1.0, 1.0},
                                                     .bandChance = 0.25,
                                                     .signalToNoise = {5.0, 25.0},
                                                     .suddenChance = 0.0};

/// @param background  recordings to make babble of; where there are none, noise is coloured noise
AugmentationPlan DrawPlan(const AugmentationRanges& ranges, std::span<const std::vector<float>> background, RandomStream* random);

/// Samples of the lead before the recording, at the recording's speed; whole frames.
std::size_t LeadSamples(const AugmentationPlan& plan);

/// Makes the copy; all of the plan but the warp. Sample i of the copy is the recording, with its lead before it, at
/// (i + offset) * speed.
///
/// @param recording   samples in [-1, 1]
/// @param background  what the plan was drawn with
/// @return samples in [-1, 1]
std::vector<float> MakeCopy(const AugmentationPlan& plan, std::span<const float> recording,
                            std::span<const std::vector<float>> background);

} // namespace velox::engine

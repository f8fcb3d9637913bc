#pragma once

#include "engine/models/AcousticModel.h"

namespace velox::engine
{

/// What a user is told from: others who say the phrase, and background (cohort normalisation: Rosenberg et al., "The use of
/// cohort normalized scores for speaker verification", 1992). Of the background there is also some sound, which noise is made of.
struct Population
{
    /// Where a network found the phrase, or what is most like it.
    struct Place
    {
        float factors = 0.0F; ///< the judge's word: factors e of the false-alarm rate below half an alarm per hour
        std::vector<int32_t> counts;
        std::vector<MelFrame> features;
    };

    static constexpr std::size_t MostPeaks = 60;
    static constexpr std::size_t MostSpeakers = 60;
    static constexpr std::size_t MostTalkers = 8;
    /// Samples of a talker at most.
    static constexpr std::size_t MostTalkerSamples = 40000;

    double hours = 0.0;                      ///< of background that the peaks are the highest of
    std::vector<Place> peaks;                ///< of the background
    std::vector<Place> speakers;             ///< the phrase, each place said by another voice
    std::vector<std::vector<float>> talkers; ///< pieces of background, 16 kHz, in [-1, 1]; none empty

    /// Whether the places are those of the model's phrase, as far as can be told.
    bool Fits(const AcousticModel& model) const;
};

/// Features and talkers are quantised to 16 bits.
std::vector<uint8_t> WritePopulation(const Population& population);

/// @param blob        at least as many bytes as its header says
/// @param population  written only on success; MalformedBlob without hours or peaks
Status ReadPopulation(const uint8_t* blob, Population* population);

} // namespace velox::engine

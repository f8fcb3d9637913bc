#pragma once

#include "engine/models/PhraseModel.h"

namespace velox::engine
{

/// What an enrollment starts from: the phrase as anybody says it, and how anybody's states sound.
struct AcousticModel
{
    PhraseModel phrase; ///< without a speaker part
    GenericSpeakers generic;
};

std::vector<uint8_t> WriteAcousticModel(const AcousticModel& model);

/// @param blob   at least as many bytes as its header says
/// @param model  written only on success
Status ReadAcousticModel(const uint8_t* blob, AcousticModel* model);

/// The places in background speech that are most like the phrase: what a user's threshold is set against.
struct Population
{
    struct Peak
    {
        float factors = 0.0F; ///< e of the false-alarm rate below half an alarm per hour, of the words alone
        std::vector<int32_t> counts;
        std::vector<MelFrame> features;
    };

    /// Peaks that are kept.
    static constexpr std::size_t MostPeaks = 60;

    double hours = 0.0; ///< of background that the peaks are the highest of
    std::vector<Peak> peaks;

    /// Whether the peaks are those of the model's phrase, as far as can be told.
    bool Fits(const AcousticModel& model) const;
};

std::vector<uint8_t> WritePopulation(const Population& population);
Status ReadPopulation(const uint8_t* blob, Population* population);

} // namespace velox::engine

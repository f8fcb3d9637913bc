#pragma once

#include "engine/base/EngineErrors.h"
#include "engine/enrollment/SpeakerAdaptation.h"
#include "engine/models/AcousticModel.h"

namespace velox::engine
{

/// A take as it is learned from: with 0.3 s of silence before and behind it.
std::vector<float> WithSilence(std::span<const float> take);

/// Learns how one user says the phrase, from a few takes.
class Enrollment
{
public:
    /// Takes beyond which nothing is gained and time is lost.
    static constexpr std::size_t MostTakes = 16;

    /// @param acousticModel  and
    /// @param population     must outlive this
    Enrollment(const AcousticModel& acousticModel, const Population& population);

    /// Checks a take and keeps it when it can be used.
    /// @return as JudgeTake
    Status AddTake(std::span<const float> samples);

    std::size_t TakeCount() const
    {
        return takes.size();
    }

    /// @param model  receives the phrase's model with the user's speaker part
    /// @return Success; NoUtterances without a take; TakesDisagree when one is not like the others
    Status Finish(PhraseModel* model) const;

private:
    struct Take
    {
        std::vector<float> samples;
        PhraseFrames clean;
        float score = 0.0F;
        double level = 0.0; ///< of its speech, in decibels
    };

    bool TakesAgree() const;
    std::vector<std::vector<float>> ReversedTakes() const;

    const AcousticModel& acousticModel;
    const Population& population;
    std::vector<Take> takes;
};

} // namespace velox::engine

#pragma once

#include "engine/base/EngineErrors.h"
#include "engine/enrollment/SpeakerAdaptation.h"
#include "engine/models/Population.h"

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
    /// One take alone does not tell how a voice varies.
    static constexpr std::size_t LeastTakes = 2;

    /// @param acousticModel  and
    /// @param population     must outlive this
    Enrollment(const AcousticModel& acousticModel, const Population& population);

    /// Checks a take and keeps it when it can be used.
    /// @return as JudgeTake
    Status AddTake(std::span<const float> samples);

    /// Whether the last take was kept although it would not fire: it may be another phrase.
    bool LastTakeIsNear() const
    {
        return lastIsNear;
    }

    std::size_t TakeCount() const
    {
        return takes.size();
    }

    /// Whether a model could be made of the takes so far, as far as their number goes.
    bool HasEnough() const
    {
        return takes.size() >= LeastTakes;
    }

    /// The take that is not like the others, by its place among all that were checked, from 1; nothing when all are alike.
    std::optional<std::size_t> OddTake() const;

    /// The order of the takes changes nothing.
    /// @param model  receives the phrase's model with the user's speaker part
    /// @return Success; NoUtterances with fewer than LeastTakes; TakesDisagree when one is not like the others
    Status Finish(PhraseModel* model) const;

private:
    struct Take
    {
        std::vector<float> samples;
        PhraseFrames clean;
        float factors = 0.0F;   ///< the judge's word on the clean take
        double level = 0.0;     ///< of its speech, in decibels
        std::size_t number = 0; ///< among all that were checked, from 1
    };

    std::vector<Take> InFixedOrder() const;

    const AcousticModel& acousticModel;
    const Population& population;
    std::vector<Take> takes;
    std::size_t checked = 0;
    bool lastIsNear = false;
};

} // namespace velox::engine

#include "engine/training/Calibration.h"

#include "engine/listening/PathDescription.h"

#include <algorithm>

namespace velox::engine
{

namespace
{

/// Exceeding blocks that the usual slope counts as, and that heard and unheard background have one slope.
constexpr float SlopePrior = 300.0F;
/// From the start to half an alarm per hour of unheard speech. The scores are bounded: the tail falls off faster there than a fit
/// to its beginning says.
constexpr float UsualSearchSlope = 0.38F;
constexpr float UsualJudgeSlope = 0.65F;

auto LogOddsBy(const PhraseModel& model)
{
    return [&model](const PhrasePlace& place) {
        return model.judge.LogOdds(DescribePath(place.path));
    };
}

template <typename Score>
std::vector<float> ScoresOf(const std::vector<PhrasePlace>& places, Score score)
{
    std::vector<float> scores;
    std::ranges::transform(places, std::back_inserter(scores), score);
    return scores;
}

/// The tail of the model's own scores, moved and stretched as the halves' networks' scores are on what they did not hear. Of
/// little background both are known badly.
template <typename Score>
BackgroundTail TailOf(const std::vector<PhrasePlace>& heard, const HeldOutPlaces& heldOut, float usualSlope, Score score)
{
    std::vector<float> own = ScoresOf(heard, score);
    std::vector<float> halvesHeard = ScoresOf(heldOut.heardBackground, score);
    std::vector<float> halvesUnheard = ScoresOf(heldOut.background, score);
    const BackgroundTail before = BackgroundTail::Fit(halvesHeard);
    const BackgroundTail after = BackgroundTail::Fit(halvesUnheard);
    const auto blocks = static_cast<float>(static_cast<double>(own.size()) * BackgroundTail::ExceedingShare);
    const auto drawn = [blocks](float measured, float usual) {
        return (blocks * measured + SlopePrior * usual) / (blocks + SlopePrior);
    };
    BackgroundTail tail = BackgroundTail::Fit(own);
    tail.start += after.start - before.start;
    tail.slope = drawn(tail.slope, usualSlope) * drawn(after.slope / before.slope, 1.0F);
    return tail;
}

} // namespace

void CalibrateTails(const std::vector<PhrasePlace>& heard, const HeldOutPlaces& heldOut, PhraseModel* model)
{
    model->searchTail = TailOf(heard, heldOut, UsualSearchSlope, [](const PhrasePlace& place) { return place.score; });
    model->tail = TailOf(heard, heldOut, UsualJudgeSlope, LogOddsBy(*model));
}

std::vector<float> JudgeHeldOutTakes(const HeldOutPlaces& heldOut, const PhraseModel& model)
{
    constexpr float TooShort = -100.0F;
    std::vector<float> background = ScoresOf(heldOut.background, LogOddsBy(model));
    const BackgroundTail tail{BackgroundTail::Fit(background).start, model.tail.slope};
    return ScoresOf(heldOut.phrases.takes, [&](const PhrasePlace& place) {
        return place.features.empty() ? TooShort : tail.FactorsBelowHalf(LogOddsBy(model)(place));
    });
}

} // namespace velox::engine

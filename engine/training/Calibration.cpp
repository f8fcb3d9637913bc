#include "engine/training/Calibration.h"

#include "engine/listening/PathDescription.h"

#include <algorithm>

namespace velox::engine
{

namespace
{

/// Exceeding blocks that the usual slope counts as.
constexpr float SlopePrior = 600.0F;
/// The scores are bounded: down to half an alarm per hour the tail falls off faster than its beginning says.
constexpr float FallOff = 0.75F;

/// What is known of a score beforehand.
struct UsualTail
{
    float unheard; ///< so much higher than background that the network learned from scores what it never heard
    float slope;
};
constexpr UsualTail UsualSearch{0.5F, 0.4F};
constexpr UsualTail UsualJudge{0.8F, 0.7F};

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

/// The tail of unheard background by what the network learned from. Of little background the slope is known badly.
template <typename Score>
BackgroundTail TailOf(const std::vector<PhrasePlace>& heard, const UsualTail& usual, Score score)
{
    std::vector<float> own = ScoresOf(heard, score);
    const auto exceeding = static_cast<float>(static_cast<double>(own.size()) * BackgroundTail::ExceedingShare);
    const BackgroundTail measured = BackgroundTail::Fit(own);
    return {measured.start + usual.unheard,
            (exceeding * FallOff * measured.slope + SlopePrior * usual.slope) / (exceeding + SlopePrior)};
}

} // namespace

void CalibrateTails(const std::vector<PhrasePlace>& heard, PhraseModel* model)
{
    model->searchTail = TailOf(heard, UsualSearch, [](const PhrasePlace& place) { return place.score; });
    model->tail = TailOf(heard, UsualJudge, LogOddsBy(*model));
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

#include "console/takes/TakeComparison.h"

#include "engine/enrollment/Enrollment.h"
#include "engine/enrollment/TakeReview.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace velox::console
{

namespace
{

/// Levels further apart than this teach the model the distance and not the voice.
constexpr double MostLevelDifference = 12.0;
/// A phrase this much longer or shorter than the others was said differently, or not whole.
constexpr double MostLengthRatio = 1.5;
/// Score below the others': three factors e of the false-alarm rate.
constexpr double MostScoreDifference = 30.0;

/// One take's figure beside those of the others.
struct Comparison
{
    double own = 0.0;
    std::vector<double> others;

    /// Whether more than half of the others differ from it: of three takes only the odd one does, of two both.
    template <typename Predicate>
    bool DiffersFromMost(Predicate differ) const
    {
        const auto differing = std::count_if(others.begin(), others.end(), [&](double other) { return differ(own, other); });
        return 2 * differing > std::ssize(others);
    }

    double MiddleOfOthers() const
    {
        std::vector<double> values = others;
        const auto middle = values.begin() + std::ssize(values) / 2;
        std::nth_element(values.begin(), middle, values.end());
        return *middle;
    }
};

template <typename Figure>
Comparison Compare(std::span<const TakeFigures> takes, std::size_t take, Figure figure)
{
    Comparison comparison{figure(takes[take]), {}};
    for (std::size_t i = 0; i < takes.size(); ++i)
    {
        if (i != take)
        {
            comparison.others.push_back(figure(takes[i]));
        }
    }
    return comparison;
}

/// @param model  scores with a model of the other takes
std::optional<TakeRemark> UnlikeInVoice(const Comparison& model, std::optional<double> userThreshold)
{
    // Two takes are each scored by a model of the other: when they differ, neither is heard.
    const bool two = model.others.size() == 1;
    const auto heard = [&](double score) {
        return score > userThreshold.value_or(0.0);
    };
    if (!userThreshold || heard(model.own) || !(two || heard(model.MiddleOfOthers())))
    {
        return std::nullopt;
    }
    return TakeRemark{"UnlikeInVoice",
                      fmt::format("unlike the others: a model of the other takes gives it {:.0f}, and must give more than {:g}",
                                  model.own, *userThreshold),
                      "Is it the same person, at the same distance? Record it again."};
}

std::optional<TakeRemark> UnlikeInLength(const Comparison& seconds)
{
    const auto differ = [](double a, double b) {
        return std::max(a, b) > MostLengthRatio * std::min(a, b);
    };
    if (!seconds.DiffersFromMost(differ))
    {
        return std::nullopt;
    }
    return TakeRemark{"UnlikeInLength",
                      fmt::format("unlike the others: the phrase takes {:.2f} s, in the others {:.2f} s", seconds.own,
                                  seconds.MiddleOfOthers()),
                      "Say it at your usual pace."};
}

std::optional<TakeRemark> UnlikeInLevel(const Comparison& level)
{
    if (!level.DiffersFromMost([](double own, double other) { return std::abs(own - other) > MostLevelDifference; }))
    {
        return std::nullopt;
    }
    return TakeRemark{
        "UnlikeInLevel",
        fmt::format("unlike the others: the speech has {:.0f} dB, in the others {:.0f} dB", level.own, level.MiddleOfOthers()),
        "Keep the distance and the recording level the same."};
}

std::optional<TakeRemark> UnlikeInScore(const Comparison& score)
{
    if (!score.DiffersFromMost([](double own, double other) { return other - own > MostScoreDifference; }))
    {
        return std::nullopt;
    }
    return TakeRemark{"UnlikeInScore",
                      fmt::format("unlike the others: it scores {:.0f}, the others {:.0f}", score.own, score.MiddleOfOthers()),
                      "Say the phrase more clearly."};
}

/// The first difference that holds.
std::optional<TakeRemark> Difference(std::span<const TakeFigures> takes, std::size_t i, std::optional<double> userThreshold)
{
    const auto compare = [&](auto figure) {
        return Compare(takes, i, figure);
    };
    if (takes[i].likeTheOthers)
    {
        const auto model = compare([](const TakeFigures& take) { return take.likeTheOthers.value_or(0.0); });
        if (auto remark = UnlikeInVoice(model, userThreshold))
        {
            return remark;
        }
    }
    if (auto remark = UnlikeInLength(compare([](const TakeFigures& take) { return take.seconds; })))
    {
        return remark;
    }
    if (auto remark = UnlikeInLevel(compare([](const TakeFigures& take) { return take.level; })))
    {
        return remark;
    }
    return UnlikeInScore(compare([](const TakeFigures& take) { return take.score; }));
}

} // namespace

std::vector<std::optional<TakeRemark>> FindOutliers(std::span<const TakeFigures> takes, std::optional<double> userThreshold)
{
    std::vector<std::optional<TakeRemark>> outliers(takes.size());
    for (std::size_t i = 0; takes.size() > 1 && i < takes.size(); ++i)
    {
        outliers[i] = Difference(takes, i, userThreshold);
    }
    return outliers;
}

double ScoreWith(const engine::PhraseModel& model, std::span<const float> take)
{
    const engine::TakeReview review = engine::ReviewTake(&model, take);
    return review.phrase ? static_cast<double>(review.phrase->score) : 0.0;
}

std::vector<std::optional<double>> ScoreAgainstOthers(std::span<const Audio* const> takes, const engine::AcousticModel& acoustic,
                                                      const engine::Population& population, Progress* progress)
{
    std::vector<std::optional<double>> scores(takes.size());
    for (std::size_t out = 0; takes.size() > 1 && out < takes.size(); ++out)
    {
        progress->Update(static_cast<double>(out) / static_cast<double>(takes.size()));
        engine::Enrollment others(acoustic, population);
        for (std::size_t i = 0; i < takes.size(); ++i)
        {
            if (i != out)
            {
                others.AddTake(takes[i]->samples);
            }
        }
        if (engine::PhraseModel model; others.Finish(&model) == engine::Status::Success)
        {
            scores[out] = ScoreWith(model, takes[out]->samples);
        }
    }
    progress->Update(1.0);
    return scores;
}

} // namespace velox::console

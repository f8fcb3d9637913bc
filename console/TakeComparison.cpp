#include "TakeComparison.h"

#include "Enrollment.h"

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

double Median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// The middle of one figure over all takes but one.
template <typename Figure>
double MiddleOfOthers(std::span<const TakeFigures> takes, std::size_t but, Figure figure)
{
    std::vector<double> values;
    for (std::size_t i = 0; i < takes.size(); ++i)
    {
        if (i != but)
        {
            values.push_back(figure(takes[i]));
        }
    }
    return Median(std::move(values));
}

std::optional<Remark> UnlikeInVoice(const TakeFigures& take, double otherTakes, std::optional<double> userThreshold)
{
    if (!take.likeTheOthers || !userThreshold || *take.likeTheOthers > *userThreshold || otherTakes <= *userThreshold)
    {
        return std::nullopt;
    }
    return Remark{"UnlikeInVoice",
                  fmt::format("unlike the others: a model of the other takes gives it {:.0f}, and must give more than {:g}",
                              *take.likeTheOthers, *userThreshold),
                  "Is it the same person, at the same distance? Record it again."};
}

std::optional<Remark> UnlikeInLength(double seconds, double others)
{
    if (std::max(seconds, others) <= MostLengthRatio * std::min(seconds, others))
    {
        return std::nullopt;
    }
    return Remark{"UnlikeInLength",
                  fmt::format("unlike the others: the phrase takes {:.2f} s, in the others {:.2f} s", seconds, others),
                  "Say it at your usual pace."};
}

std::optional<Remark> UnlikeInLevel(double level, double others)
{
    if (std::abs(level - others) <= MostLevelDifference)
    {
        return std::nullopt;
    }
    return Remark{"UnlikeInLevel",
                  fmt::format("unlike the others: the speech has {:.0f} dB, in the others {:.0f} dB", level, others),
                  "Keep the distance and the recording level the same."};
}

std::optional<Remark> UnlikeInScore(double score, double others)
{
    if (others - score <= MostScoreDifference)
    {
        return std::nullopt;
    }
    return Remark{"UnlikeInScore", fmt::format("unlike the others: it scores {:.0f}, the others {:.0f}", score, others),
                  "Say the phrase more clearly."};
}

std::optional<Remark> Difference(std::span<const TakeFigures> takes, std::size_t i, std::optional<double> userThreshold)
{
    const TakeFigures& take = takes[i];
    const auto others = [&](auto figure) {
        return MiddleOfOthers(takes, i, figure);
    };
    const double alike = others([](const TakeFigures& other) { return other.likeTheOthers.value_or(0.0); });
    // With two takes each is scored by a model of the other: neither stands for the majority.
    if (auto remark = UnlikeInVoice(take, takes.size() > 2 ? alike : HUGE_VAL, userThreshold))
    {
        return remark;
    }
    if (auto remark = UnlikeInLength(take.seconds, others([](const TakeFigures& other) { return other.seconds; })))
    {
        return remark;
    }
    if (auto remark = UnlikeInLevel(take.level, others([](const TakeFigures& other) { return other.level; })))
    {
        return remark;
    }
    return UnlikeInScore(take.score, others([](const TakeFigures& other) { return other.score; }));
}

} // namespace

std::vector<std::optional<Remark>> FindOutliers(std::span<const TakeFigures> takes, std::optional<double> userThreshold)
{
    std::vector<std::optional<Remark>> outliers(takes.size());
    for (std::size_t i = 0; takes.size() > 1 && i < takes.size(); ++i)
    {
        outliers[i] = Difference(takes, i, userThreshold);
    }
    return outliers;
}

double ScoreWith(const engine::PhraseModel& model, std::span<const float> take)
{
    const engine::TakeReview review = engine::ReviewTake(&model, take);
    return review.phrase ? double{review.phrase->score} : 0.0;
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

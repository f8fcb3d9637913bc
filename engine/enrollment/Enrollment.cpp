#include "engine/enrollment/Enrollment.h"

#include "engine/enrollment/Augmentation.h"
#include "engine/enrollment/TakeAgreement.h"
#include "engine/enrollment/TakeReview.h"
#include "engine/listening/PathDescription.h"
#include "engine/listening/PhraseSearch.h"
#include "engine/listening/SpeakerRatio.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>

namespace velox::engine
{

namespace
{

/// A copy's frames count as much as a take's: with a quarter of that the user's mixtures stayed close to everybody's.
constexpr int CopiesPerTake = 24;
constexpr uint64_t CopySeed = 20260711; // fixed: the same takes give the same model
constexpr double SilenceSeconds = 0.3;

/// How far from the border of background and other speakers towards the user's own takes the user's threshold lies.
constexpr float ThresholdShare = 0.6F;
/// Share of the user's takes and copies that are worse than what the threshold is set by.
constexpr double OwnShare = 0.1;
/// The background peak by whose rank the background's threshold is found.
constexpr std::size_t TailRank = 10;
/// Where of the other speakers' sums the border lies, in deviations above their mean.
constexpr float OthersDeviations = 2.0F;
constexpr std::size_t FewestOthers = 5;

float Quantile(std::vector<float> values, double share)
{
    const auto place = values.begin() + static_cast<std::ptrdiff_t>(share * static_cast<double>(values.size() - 1));
    std::nth_element(values.begin(), place, values.end());
    return *place;
}

/// Sums of the phrase's factors and the speaker ratio.
std::vector<float> SumsOf(const SpeakerModel& speaker, const std::vector<Population::Place>& places)
{
    std::vector<float> sums;
    std::ranges::transform(places, std::back_inserter(sums), [&](const Population::Place& place) {
        return place.factors + SpeakerModel::Weight * SpeakerRatio(speaker, SpeakerFrames(place.features), place.counts);
    });
    return sums;
}

/// The sum that half a false alarm per hour reaches.
float BackgroundThreshold(const SpeakerModel& speaker, const Population& population)
{
    std::vector<float> sums = SumsOf(speaker, population.peaks);
    const std::size_t rank = std::min(TailRank, sums.size() - 1);
    std::nth_element(sums.begin(), sums.begin() + static_cast<std::ptrdiff_t>(rank), sums.end(), std::greater<>());
    const double rate = static_cast<double>(rank + 1) / population.hours;
    return sums[rank] + static_cast<float>(std::log(rate / 0.5));
}

/// The sum that nearly no other speaker reaches; with few others that is known badly.
float OthersThreshold(const SpeakerModel& speaker, const Population& population)
{
    const std::vector<float> sums = SumsOf(speaker, population.speakers);
    if (sums.size() < FewestOthers)
    {
        return std::numeric_limits<float>::lowest();
    }
    const Eigen::Map<const Eigen::ArrayXf> others(sums.data(), static_cast<Eigen::Index>(sums.size()));
    return others.mean() + OthersDeviations * std::sqrt((others - others.mean()).square().mean());
}

} // namespace

std::vector<float> WithSilence(std::span<const float> take)
{
    const auto silence = static_cast<std::size_t>(SilenceSeconds * SampleRate);
    std::vector<float> padded(silence, 0.0F);
    padded.insert(padded.end(), take.begin(), take.end());
    padded.resize(padded.size() + silence, 0.0F);
    return padded;
}

Enrollment::Enrollment(const AcousticModel& acoustic, const Population& background)
    : acousticModel(acoustic), population(background)
{
}

Status Enrollment::AddTake(std::span<const float> samples)
{
    ++checked;
    lastIsNear = false;
    const PhraseModel& phrase = acousticModel.phrase;
    std::vector<float> padded = WithSilence(samples);
    const std::optional<Detection> heard = ReviewTake(&phrase, padded).phrase;
    const float score = heard ? heard->score : ScoreScale::Least;
    const TakeJudgement judgement = JudgeTake(LogMelFrames(samples), samples, &phrase, score);
    if (judgement.status != Status::Success)
    {
        return judgement.status;
    }
    lastIsNear = score < ScoreScale::HalfAlarmPerHour;
    const std::optional<PhrasePlace> place = FindPhrase(phrase, padded);
    if (place && takes.size() < MostTakes)
    {
        takes.push_back({std::move(padded),
                         {SpeakerFrames(place->features), place->path.counts},
                         JudgePath(phrase, place->path),
                         judgement.level,
                         checked});
    }
    return Status::Success;
}

std::optional<std::size_t> Enrollment::OddTake() const
{
    std::vector<PhraseFrames> frames;
    std::vector<double> levels;
    for (const Take& take : takes)
    {
        frames.push_back(take.clean);
        levels.push_back(take.level);
    }
    std::optional<std::size_t> odd = UnlikeInLevel(levels);
    if (!odd)
    {
        odd = UnlikeInVoice(acousticModel.generic, frames);
    }
    return odd ? std::optional(takes[*odd].number) : std::nullopt;
}

/// Copies are drawn and sums are rounded in this order, whatever the takes came in.
std::vector<Enrollment::Take> Enrollment::InFixedOrder() const
{
    std::vector<Take> ordered = takes;
    std::sort(ordered.begin(), ordered.end(), [](const Take& a, const Take& b) { return a.samples < b.samples; });
    return ordered;
}

Status Enrollment::Finish(PhraseModel* model) const
{
    if (!HasEnough() || population.peaks.empty())
    {
        return Status::NoUtterances;
    }
    if (OddTake())
    {
        return Status::TakesDisagree;
    }

    std::vector<PhraseFrames> frames;
    std::vector<float> scores;
    RandomStream random(CopySeed);
    const std::vector<Take> ordered = InFixedOrder();
    for (const Take& take : ordered)
    {
        frames.push_back(take.clean);
        scores.push_back(take.factors);
        for (int i = 0; i < CopiesPerTake; ++i)
        {
            const AugmentationPlan plan = DrawPlan(EnrollmentRanges, population.talkers, &random);
            const std::vector<float> copy = MakeCopy(plan, take.samples, population.talkers);
            if (const auto place = FindPhrase(acousticModel.phrase, copy, plan.warp))
            {
                frames.push_back({SpeakerFrames(place->features), place->path.counts});
                scores.push_back(JudgePath(acousticModel.phrase, place->path));
            }
        }
    }

    SpeakerModel speaker = TrainSpeaker(acousticModel.generic, frames);
    std::vector<float> sums;
    for (std::size_t i = 0; i < frames.size(); ++i)
    {
        sums.push_back(scores[i] + SpeakerModel::Weight * SpeakerRatio(speaker, frames[i].frames, frames[i].counts));
    }
    const float border = std::max(BackgroundThreshold(speaker, population), OthersThreshold(speaker, population));
    speaker.threshold = border + ThresholdShare * (Quantile(sums, OwnShare) - border);

    *model = acousticModel.phrase;
    model->speaker = std::move(speaker);
    return Status::Success;
}

} // namespace velox::engine

#include "console/languages/MissEstimate.h"

#include "console/languages/LanguageRecordings.h"
#include "console/text/Wording.h"
#include "engine/base/CountInterval.h"
#include "engine/enrollment/TakeReview.h"
#include "engine/training/LanguageTrainer.h"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>

namespace velox::console
{

namespace
{

constexpr std::size_t LeastVoices = 6; // fewer are not enough to do without some
constexpr std::size_t VoicesToOneHeldOut = 5;
constexpr std::size_t SilenceAround = engine::SampleRate / 2; // around a take: it may be cut tightly

double HeldOutScore(const engine::PhraseModel& model, const engine::PhraseTake& take)
{
    std::vector<float> padded(take.samples.size() + 2 * SilenceAround);
    std::ranges::copy(take.samples, padded.begin() + SilenceAround);
    const engine::TakeReview review = engine::ReviewTake(&model, padded);
    return review.phrase ? static_cast<double>(review.phrase->score) : 0.0;
}

} // namespace

int64_t HeldOutTakes::MissedAt(double alarmsPerHour) const
{
    const auto threshold = static_cast<double>(engine::ScoreScale::FromAlarmsPerHour(alarmsPerHour));
    return std::ranges::count_if(scores, [&](double score) { return score < threshold; });
}

std::optional<HeldOutTakes> ScoreHeldOut(engine::LanguageMaterial material, engine::LanguageOptions options)
{
    std::vector<engine::PhraseTake>& takes = material.takes;
    std::set<std::string> heldOut = VoicesOf(takes);
    if (heldOut.size() < LeastVoices)
    {
        return std::nullopt;
    }
    std::size_t number = 0;
    std::erase_if(heldOut, [&](const std::string&) { return number++ % VoicesToOneHeldOut != 0; });
    const auto unheard = std::stable_partition(takes.begin(), takes.end(),
                                               [&](const engine::PhraseTake& take) { return !heldOut.contains(take.voice); });
    const std::vector<engine::PhraseTake> tested(std::make_move_iterator(unheard), std::make_move_iterator(takes.end()));
    takes.erase(unheard, takes.end());
    number = 0;
    std::erase_if(material.background, [&](const std::vector<float>&) { return number++ % 2 != 0; });
    options.batches = (options.batches + 3) / 4;
    options.copies = (options.copies + 1) / 2;
    options.backgroundCopies = 1;
    try
    {
        const std::optional<engine::LanguageModels> models = engine::TrainLanguage(material, options);
        engine::PhraseModel model;
        if (!models || engine::ReadPhraseModel(models->firmwareModel.data(), &model) != engine::Status::Success)
        {
            return std::nullopt;
        }
        HeldOutTakes result{heldOut.size(), {}};
        std::ranges::transform(tested, std::back_inserter(result.scores),
                               [&](const engine::PhraseTake& take) { return HeldOutScore(model, take); });
        return result;
    }
    catch (const std::invalid_argument&)
    {
        return std::nullopt;
    }
}

void AddMisses(const std::optional<HeldOutTakes>& takes, double alarmsPerHour, Report* report)
{
    if (!takes)
    {
        report->remarks.push_back(
            {Tone::Note, "NoEstimate",
             fmt::format("the misses are not estimated: that takes {} voices and two minutes of background", LeastVoices),
             "Give more recordings."});
        return;
    }
    const auto all = std::ssize(takes->scores);
    const int64_t missed = takes->MissedAt(alarmsPerHour);
    const engine::CountInterval share = engine::ShareFromCount(missed, all);
    report->facts.insert(report->facts.end(),
                         {{"missed", missed, "misses",
                           fmt::format("{} of {} of {} that were not learned from; that leaves {:.1f} % to {:.1f} % open (95 %)",
                                       missed, Counted(takes->scores.size(), "take"), Counted(takes->voices, "voice"),
                                       100.0 * share.least, 100.0 * share.most)},
                          {"heldOutTakes", all},
                          {"heldOutVoices", takes->voices},
                          {"missShareLeast", share.least},
                          {"missShareMost", share.most}});
    report->remarks.push_back({Tone::Note, "Misses",
                               "the misses are those of a second, shorter training without these voices, in quiet; the language "
                               "has learned from all voices and should do no worse",
                               ""});
    Chart& chart = report->chart.emplace(Chart{"Misses", "False alarms per hour", "Misses in percent", {}});
    for (const double rate : {0.01, 0.02, 0.05, 0.1, 0.2, 0.5, 1.0, 2.0, 5.0, 10.0})
    {
        const int64_t below = takes->MissedAt(rate);
        const engine::CountInterval open = engine::ShareFromCount(below, all);
        chart.points.push_back(
            {rate, 100.0 * static_cast<double>(below) / static_cast<double>(all), 100.0 * open.least, 100.0 * open.most});
    }
    if (alarmsPerHour >= chart.points.front().x && alarmsPerHour <= chart.points.back().x)
    {
        chart.marked = alarmsPerHour;
    }
}

} // namespace velox::console

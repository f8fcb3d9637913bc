#include "console/languages/MissEstimate.h"

#include "console/languages/AlarmRate.h"
#include "engine/enrollment/TakeReview.h"
#include "engine/training/LanguageTrainer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <set>
#include <stdexcept>

namespace velox::console
{

namespace
{

constexpr std::size_t VoicesToOneHeldOut = 5;
constexpr std::size_t SilenceAround = engine::SampleRate / 2; // around a take: it may be cut tightly

std::set<std::string> HeldOutVoices(const std::vector<engine::PhraseTake>& takes)
{
    std::set<std::string> voices;
    for (const engine::PhraseTake& take : takes)
    {
        voices.insert(take.voice);
    }
    std::size_t number = 0;
    std::erase_if(voices, [&](const std::string&) { return number++ % VoicesToOneHeldOut != 0; });
    return voices;
}

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
    const std::set<std::string> heldOut = HeldOutVoices(material.takes);
    std::vector<engine::PhraseTake>& takes = material.takes;
    const auto unheard = std::stable_partition(takes.begin(), takes.end(),
                                               [&](const engine::PhraseTake& take) { return !heldOut.contains(take.voice); });
    const std::vector<engine::PhraseTake> tested(std::make_move_iterator(unheard), std::make_move_iterator(takes.end()));
    takes.erase(unheard, takes.end());
    std::size_t number = 0;
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

Chart MissChart(const HeldOutTakes& takes, double alarmsPerHour)
{
    constexpr std::array Rates{0.01, 0.02, 0.05, 0.1, 0.2, 0.5, 1.0, 2.0, 5.0, 10.0};
    Chart chart{"Misses", "False alarms per hour", "Misses in percent", {}, {}};
    if (alarmsPerHour >= Rates.front() && alarmsPerHour <= Rates.back())
    {
        chart.marked = alarmsPerHour;
    }
    for (const double rate : Rates)
    {
        const auto all = std::ssize(takes.scores);
        const int64_t missed = takes.MissedAt(rate);
        const RateInterval share = ShareFromCount(missed, all);
        chart.points.push_back(
            {rate, 100.0 * static_cast<double>(missed) / static_cast<double>(all), 100.0 * share.least, 100.0 * share.most});
    }
    return chart;
}

} // namespace velox::console

#include "evaluation/Format.h"
#include "evaluation/Listening.h"
#include "evaluation/Trial.h"

#include <map>

namespace velox::evaluation
{

namespace
{

double PredefinedGoal(const std::string& condition)
{
    static const std::map<std::string, double> goals = {
        {"clean", 3.0}, {"babble 10 dB", 8.0}, {"pink 10 dB", 8.0}, {"room", 8.0}};
    const auto found = goals.find(condition);
    return found == goals.end() ? -1.0 : found->second;
}

std::vector<float> ScoresOf(const std::vector<Outcome>& outcomes)
{
    std::vector<float> scores;
    for (const Outcome& outcome : outcomes)
    {
        scores.push_back(outcome.best.score);
    }
    return scores;
}

void AddKinds(const std::string& prefix, const std::vector<Outcome>& outcomes, float threshold, Report* report)
{
    std::map<std::string, Share> kinds;
    for (const Outcome& outcome : outcomes)
    {
        kinds[outcome.clip->entry.kind].Add(outcome.best.score < threshold);
    }
    for (const auto& [kind, missed] : kinds)
    {
        report->Add(prefix + ", " + kind, missed, -1.0);
    }
}

} // namespace

void TryPredefined(const Language& language, const Judged& judged, engine::WorkerPool* pool, Report* report,
                   std::vector<Curve>* curves)
{
    const auto threshold = static_cast<float>(language.blobs.preDefinedThreshold);
    const std::string prefix = judged.phrase + ": predefined";
    const double hours = HoursOf(judged.background);
    const std::vector<float> background = ListenToBackground(language.firmware, judged.background, pool);
    Share alarms;
    for (const float score : background)
    {
        alarms.Add(score >= threshold);
    }
    report->Add(prefix + ", false alarms per hour", alarms.counted / hours, 0.5, "/h");

    for (const Condition& condition : PlaceConditions(judged.talkers))
    {
        const std::vector<Outcome> outcomes = ListenToClips(language.firmware, judged.takes, condition, pool);
        Share missed;
        for (const Outcome& outcome : outcomes)
        {
            missed.Add(outcome.best.score < threshold);
            if (outcome.best.score < threshold && PredefinedGoal(condition.name) >= 0.0)
            {
                report->Note("missed, " + condition.name + ": " + outcome.clip->entry.path + ", phrase score " +
                             Short(static_cast<double>(outcome.best.phraseScore)) + ", near margin " +
                             Short(static_cast<double>(outcome.best.nearMargin)));
            }
        }
        const std::string name = prefix + ", missed, " + condition.name;
        report->Add(name, missed, PredefinedGoal(condition.name));
        if (PredefinedGoal(condition.name) >= 0.0)
        {
            AddKinds(name, outcomes, threshold, report);
        }
        curves->push_back(MakeCurve(condition.name, ScoresOf(outcomes), background, hours));
    }

    Share near;
    std::map<std::string, Share> kinds;
    for (const Outcome& outcome : ListenToClips(language.firmware, judged.near, PlaceConditions(judged.talkers).front(), pool))
    {
        const bool accepted = outcome.best.score >= threshold;
        near.Add(accepted);
        kinds[outcome.clip->entry.set].Add(accepted);
    }
    report->Add(prefix + ", near phrases accepted", near, 15.0);
    for (const auto& [set, accepted] : kinds)
    {
        const bool strict = set.starts_with("near-half") || set == "near-swapped";
        report->Add(prefix + ", accepted, " + set, accepted, strict ? 2.0 : -1.0);
    }
}

} // namespace velox::evaluation

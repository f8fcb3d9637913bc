#include "evaluation/Format.h"
#include "evaluation/Listening.h"
#include "evaluation/Trial.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace velox::evaluation
{

namespace
{

constexpr double JudgedRate = 0.5; // false alarms per hour
constexpr double MostAboveClean = 3.0;
constexpr double MostAboveJudged = 2.0;

/// Kinds of voice whose misses are counted apart. The rows of the first are there even when the corpus has none of them.
constexpr const char* Natural = "natural";

/// Misses by kind of voice at the engine's own threshold, and at the one that gives the judged rate on the judged background.
struct Misses
{
    std::map<std::string, Share> own = {{Natural, {}}};
    std::map<std::string, Share> atRate = {{Natural, {}}};
};

std::vector<float> NaturalScores(const std::vector<Outcome>& outcomes)
{
    std::vector<float> scores;
    for (const Outcome& outcome : outcomes)
    {
        if (outcome.clip->entry.kind == Natural)
        {
            scores.push_back(outcome.best.score);
        }
    }
    return scores;
}

class PredefinedTrial
{
public:
    PredefinedTrial(const Language& learned, const Judged& material, engine::WorkerPool* workers, Report* figures)
        : model(learned.firmware), threshold(static_cast<float>(learned.blobs.preDefinedThreshold)), judged(material),
          pool(workers), report(figures), prefix(material.phrase + ": predefined")
    {
    }

    void Run(std::vector<Curve>* curves)
    {
        CountAlarms();
        Share own;
        Share atRate;
        for (const Condition& condition : Conditions(judged.talkers))
        {
            const std::vector<Outcome> outcomes = ListenToClips(model, judged.takes, condition, judged.seed, pool);
            const Misses misses = Count(condition, outcomes);
            AddMisses(condition, misses);
            if (condition.predefined.IsSet())
            {
                own.Join(misses.own.at(Natural));
                atRate.Join(misses.atRate.at(Natural));
                curves->push_back(MakeCurve(condition.name, NaturalScores(outcomes), people, hours));
            }
        }
        report->Add(prefix + ", missed more than at 0.5 alarms/h, conditions with a goal, natural",
                    std::abs(own.Percent() - atRate.Percent()), {MostAboveJudged}, "points");
        TryNear();
    }

private:
    /// Alarms in recordings of people are what goals are set for; synthesised sentences stand beside them.
    void CountAlarms()
    {
        for (const bool human : {true, false})
        {
            const std::vector<Clip> recordings = PeopleOf(judged.background, human);
            const std::vector<float> scores = ListenToBackground(model, recordings, pool);
            const auto alarms = std::count_if(scores.begin(), scores.end(), [&](float score) { return score >= threshold; });
            report->AddRate(prefix + ", alarms per hour, " + (human ? "people" : "synthesised"), static_cast<int>(alarms),
                            HoursOf(recordings), human ? Goal{1.0, 0.2} : Goal());
            if (human)
            {
                people = scores;
                hours = HoursOf(recordings);
            }
        }
        // So many alarms are allowed: the next peak below them is what a score has to surpass.
        const auto allowed = static_cast<std::size_t>(JudgedRate * hours);
        judgedThreshold = allowed < people.size() ? people[allowed] : 0.0F;
        report->Add(prefix + ", score that gives 0.5 alarms/h", static_cast<double>(judgedThreshold), {}, "");
    }

    Misses Count(const Condition& condition, const std::vector<Outcome>& outcomes)
    {
        Misses misses;
        for (const Outcome& outcome : outcomes)
        {
            const bool missed = outcome.best.score < threshold;
            misses.own[outcome.clip->entry.kind].Add(missed);
            misses.atRate[outcome.clip->entry.kind].Add(outcome.best.score <= judgedThreshold);
            if (missed && condition.predefined.IsSet())
            {
                report->Note("missed, " + condition.name + ": " + outcome.clip->entry.path + ", score " +
                             Short(static_cast<double>(outcome.best.score)) + ", phrase score " +
                             Short(static_cast<double>(outcome.best.phraseScore)) + ", search " +
                             Short(static_cast<double>(outcome.best.searchScore)));
            }
        }
        return misses;
    }

    void AddMisses(const Condition& condition, const Misses& misses)
    {
        for (const auto& [kind, missed] : misses.own)
        {
            const bool accentGoal = kind == "natural-accent" && condition.name == "clean";
            const Goal goal = kind == Natural ? condition.predefined : accentGoal ? Goal{8.0} : Goal();
            const std::string name = prefix + ", missed, " + condition.name;
            report->Add(name + ", " + kind, missed, goal);
            report->Add(name + " at 0.5 alarms/h, " + kind, misses.atRate.at(kind), {});
        }
        const double natural = misses.own.at(Natural).Percent();
        if (condition.name == "clean")
        {
            clean = natural;
        }
        else if (condition.name.starts_with("level"))
        {
            report->Add(prefix + ", missed more than clean, " + condition.name + ", natural", natural - clean, {MostAboveClean},
                        "points");
        }
    }

    void TryNear()
    {
        std::map<std::string, Share> groups = {{Natural, {}}}; // by kind of voice, and by what is said
        for (const Outcome& outcome : ListenToClips(model, judged.near, CleanCondition(), judged.seed, pool))
        {
            const Entry& entry = outcome.clip->entry;
            groups[entry.kind].Add(outcome.best.score >= threshold);
            groups[entry.set].Add(outcome.best.score >= threshold);
        }
        for (const auto& [group, accepted] : groups)
        {
            report->Add(prefix + ", near phrases accepted, " + group, accepted, group == Natural ? Goal{15.0} : Goal());
        }
    }

    const engine::PhraseModel& model;
    float threshold;
    float judgedThreshold = 0.0F;
    const Judged& judged;
    engine::WorkerPool* pool;
    Report* report;
    std::string prefix;
    std::vector<float> people; ///< scores of the detections in recordings of people
    double hours = 0.0;        ///< of these recordings
    double clean = 0.0;        ///< percent missed
};

} // namespace

void TryPredefined(const Language& language, const Judged& judged, engine::WorkerPool* pool, Report* report,
                   std::vector<Curve>* curves)
{
    PredefinedTrial(language, judged, pool, report).Run(curves);
}

} // namespace velox::evaluation

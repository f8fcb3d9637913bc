#include "engine/enrollment/Enrollment.h"
#include "evaluation/Listening.h"
#include "evaluation/Trial.h"

#include <algorithm>
#include <ctime>
#include <iostream>
#include <iterator>
#include <map>
#include <stdexcept>
#include <string_view>

namespace velox::evaluation
{

namespace
{

constexpr std::size_t LeastTakes = 8;
constexpr std::size_t MostNatural = 6;
constexpr std::size_t MostFormant = 2;

struct User
{
    std::string voice;
    std::string sex;
    std::string group; ///< natural or formant
    std::vector<Clip> takes;
};

/// Voices that have enough takes, natural ones first; those that speak the phrase's own language come before the others. A
/// formant voice is a user in the phrase's own language only.
std::vector<User> ChooseUsers(const std::vector<Clip>& takes)
{
    std::vector<User> users;
    for (const auto& [kind, most] : {std::pair{"natural", MostNatural}, std::pair{"natural-accent", MostNatural},
                                     std::pair{"formant", MostNatural + MostFormant}})
    {
        std::map<std::string, std::vector<Clip>> voices;
        for (const Clip& take : takes)
        {
            if (take.entry.kind == kind)
            {
                voices[take.entry.voice].push_back(take);
            }
        }
        for (auto& [voice, own] : voices)
        {
            if (own.size() >= LeastTakes && users.size() < most)
            {
                const std::string group = std::string_view(kind).starts_with("natural") ? "natural" : "formant";
                users.push_back({voice, own.front().entry.sex, group, std::move(own)});
            }
        }
    }
    return users;
}

template <class Predicate>
std::vector<Clip> Chosen(const std::vector<Clip>& clips, const Predicate& predicate)
{
    std::vector<Clip> chosen;
    std::copy_if(clips.begin(), clips.end(), std::back_inserter(chosen), predicate);
    return chosen;
}

/// Of all users of a group.
struct Figures
{
    std::vector<std::pair<Condition, Share>> missed;
    Share refused; ///< users who could not be enrolled
    Share others;
    Share sameSex; ///< of the others, natural ones alone
    Share nearOwn;
    Share nearOthers;
    int alarms = 0;
    double hours = 0.0;
    double seconds = 0.0; ///< the longest enrollment
    std::size_t bytes = 0;
};

class UserTrial
{
public:
    UserTrial(const Language& learned, const Judged& material, engine::WorkerPool* workers)
        : language(learned), judged(material), pool(workers), conditions(Conditions(material.talkers)),
          threshold(static_cast<float>(learned.blobs.userDefinedThreshold))
    {
    }

    Figures NoFigures() const
    {
        Figures figures;
        for (const Condition& condition : conditions)
        {
            figures.missed.emplace_back(condition, Share());
        }
        return figures;
    }

    /// @param number  of the user, so that each has noise of its own
    void Try(const User& user, std::size_t number, Figures* figures)
    {
        listener = judged.seed * 1000 + number;
        const std::vector<Clip> own(user.takes.begin() + EnrollmentTakes, user.takes.end());
        engine::PhraseModel model;
        const bool enrolled = Enroll(user, &model, figures);
        figures->refused.Add(!enrolled);
        for (auto& [condition, missed] : figures->missed)
        {
            if (!enrolled) // nobody who cannot be enrolled is heard
            {
                missed.counted += static_cast<int>(own.size());
                missed.all += static_cast<int>(own.size());
                continue;
            }
            for (const Outcome& outcome : ListenToClips(model, own, condition, listener, pool))
            {
                missed.Add(outcome.best.score < threshold);
            }
        }
        if (enrolled)
        {
            TryOthers(user, model, figures);
        }
    }

private:
    bool Enroll(const User& user, engine::PhraseModel* model, Figures* figures) const
    {
        const std::clock_t start = std::clock();
        engine::Enrollment enrollment(language.acoustic, language.population);
        for (std::size_t i = 0; i < EnrollmentTakes; ++i)
        {
            const engine::Status status = enrollment.AddTake(WithSilence(user.takes[i].samples));
            if (status != engine::Status::Success)
            {
                std::cerr << user.takes[i].entry.path << ": refused with status " << static_cast<uint32_t>(status) << '\n';
            }
        }
        if (enrollment.Finish(model) != engine::Status::Success)
        {
            std::cerr << user.voice << " cannot be enrolled\n";
            return false;
        }
        figures->seconds = std::max(figures->seconds, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
        const std::vector<uint8_t> bytes = engine::WritePhraseModel(*model);
        figures->bytes = std::max(figures->bytes, bytes.size());
        if (engine::ReadPhraseModel(bytes.data(), model) != engine::Status::Success)
        {
            throw std::runtime_error("a user's model cannot be read back");
        }
        return true;
    }

    Share Accepted(const engine::PhraseModel& model, const std::vector<Clip>& clips) const
    {
        Share accepted;
        for (const Outcome& outcome : ListenToClips(model, clips, CleanCondition(), listener, pool))
        {
            accepted.Add(outcome.best.score >= threshold);
        }
        return accepted;
    }

    void TryOthers(const User& user, const engine::PhraseModel& model, Figures* figures) const
    {
        const auto isOwn = [&user](const Clip& clip) {
            return clip.entry.voice == user.voice;
        };
        const auto isOther = [&user](const Clip& clip) {
            return clip.entry.voice != user.voice;
        };
        const std::vector<Clip> others = Chosen(judged.takes, isOther);
        figures->others.Join(Accepted(model, others));
        figures->sameSex.Join(Accepted(model, Chosen(others, [&user](const Clip& clip) {
                                           return clip.entry.sex == user.sex && clip.entry.kind.starts_with("natural");
                                       })));
        figures->nearOwn.Join(Accepted(model, Chosen(judged.near, isOwn)));
        figures->nearOthers.Join(Accepted(model, Chosen(judged.near, isOther)));
        const std::vector<float> scores = ListenToBackground(model, judged.background, pool);
        figures->alarms +=
            static_cast<int>(std::count_if(scores.begin(), scores.end(), [this](float score) { return score >= threshold; }));
        figures->hours += HoursOf(judged.background);
    }

    const Language& language;
    const Judged& judged;
    engine::WorkerPool* pool;
    std::vector<Condition> conditions;
    float threshold;
    uint64_t listener = 0;
};

void Write(const std::string& prefix, bool natural, const Figures& figures, Report* report)
{
    const auto goal = [natural](double most) {
        return natural ? Goal{most} : Goal();
    };
    report->Add(prefix + ", cannot be enrolled", figures.refused, goal(0.0));
    for (const auto& [condition, missed] : figures.missed)
    {
        report->Add(prefix + ", missed, " + condition.name, missed, natural ? condition.user : Goal());
    }
    report->Add(prefix + ", other natural voices of the same sex accepted", figures.sameSex, goal(5.0));
    report->Add(prefix + ", other voices accepted", figures.others, {});
    report->Add(prefix + ", near phrases of others accepted", figures.nearOthers, goal(1.0));
    report->Add(prefix + ", near phrases of the user accepted", figures.nearOwn, goal(15.0));
    report->AddRate(prefix + ", alarms per hour, people and synthesised", figures.alarms, figures.hours, {});
    report->Add(prefix + ", processor seconds of an enrollment", figures.seconds, goal(1.0), "s");
    report->Add(prefix + ", bytes of a model", static_cast<double>(figures.bytes), goal(160.0 * 1024.0), "");
}

} // namespace

void TryUsers(const Language& language, const Judged& judged, engine::WorkerPool* pool, Report* report)
{
    UserTrial trial(language, judged, pool);
    std::map<std::string, Figures> groups = {{"natural", trial.NoFigures()}, {"formant", trial.NoFigures()}};
    const std::vector<User> users = ChooseUsers(judged.takes);
    for (std::size_t number = 0; number < users.size(); ++number)
    {
        trial.Try(users[number], number + 1, &groups[users[number].group]);
    }
    for (const auto& [group, figures] : groups)
    {
        Write(judged.phrase + ": user, " + group, group == "natural", figures, report);
    }
}

} // namespace velox::evaluation

#include "engine/enrollment/Enrollment.h"
#include "evaluation/Listening.h"
#include "evaluation/Trial.h"

#include <chrono>
#include <iostream>
#include <map>

namespace velox::evaluation
{

namespace
{

constexpr std::size_t LeastTakes = 8;
constexpr std::size_t MostUsers = 4;

/// Takes by voice, of the voices that have enough of them; the phrase as the voice's own language reads it comes first.
std::map<std::string, std::vector<Clip>> Users(const std::vector<Clip>& takes)
{
    std::map<std::string, std::vector<Clip>> voices;
    for (const Clip& take : takes)
    {
        if (take.entry.kind != "espeak-foreign")
        {
            voices[take.entry.voice].push_back(take);
        }
    }
    std::erase_if(voices, [](const auto& voice) { return voice.second.size() < LeastTakes; });
    while (voices.size() > MostUsers)
    {
        voices.erase(voices.begin()); // in alphabetical order: the synthesiser's voices first
    }
    return voices;
}

double UserGoal(const std::string& condition)
{
    static const std::map<std::string, double> goals = {
        {"clean", 1.0}, {"babble 10 dB", 3.0}, {"pink 10 dB", 3.0}, {"white 10 dB", 3.0}, {"room", 3.0}};
    const auto found = goals.find(condition);
    return found == goals.end() ? -1.0 : found->second;
}

std::vector<Clip> ClipsOfOthers(const std::vector<Clip>& clips, const std::string& voice, bool own)
{
    std::vector<Clip> chosen;
    for (const Clip& clip : clips)
    {
        if ((clip.entry.voice == voice) == own)
        {
            chosen.push_back(clip);
        }
    }
    return chosen;
}

/// A quarter of the recordings: every user listens to them anew.
std::vector<Clip> EveryFourth(const std::vector<Clip>& clips)
{
    std::vector<Clip> chosen;
    for (std::size_t i = 0; i < clips.size(); i += 4)
    {
        chosen.push_back(clips[i]);
    }
    return chosen;
}

struct UserFigures
{
    std::map<std::string, Share> missed; ///< by condition
    Share others;
    Share nearOwn;
    Share nearOthers;
    int alarms = 0;
    double hours = 0.0;
    double enrollmentSeconds = 0.0;
    std::size_t modelBytes = 0;
};

void CountAccepted(const engine::PhraseModel& model, const std::vector<Clip>& clips, float threshold, engine::WorkerPool* pool,
                   const Condition& clean, Share* share)
{
    for (const Outcome& outcome : ListenToClips(model, clips, clean, pool))
    {
        share->Add(outcome.best.score >= threshold);
    }
}

void TryUser(const Language& language, const Judged& judged, const std::string& voice, const std::vector<Clip>& takes,
             engine::WorkerPool* pool, UserFigures* figures)
{
    const auto start = std::chrono::steady_clock::now();
    engine::Enrollment enrollment(language.acoustic, language.population);
    for (std::size_t i = 0; i < EnrollmentTakes; ++i)
    {
        const engine::Status status = enrollment.AddTake(WithSilence(takes[i].samples));
        if (status != engine::Status::Success)
        {
            std::cerr << takes[i].entry.path << ": refused with status " << static_cast<uint32_t>(status) << '\n';
        }
    }
    engine::PhraseModel model;
    if (enrollment.Finish(&model) != engine::Status::Success)
    {
        std::cerr << voice << " cannot be enrolled\n";
        figures->missed["clean"].Add(true);
        return;
    }
    figures->enrollmentSeconds =
        std::max(figures->enrollmentSeconds, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    const std::vector<uint8_t> bytes = engine::WritePhraseModel(model);
    figures->modelBytes = std::max(figures->modelBytes, bytes.size());
    if (engine::ReadPhraseModel(bytes.data(), &model) != engine::Status::Success)
    {
        throw std::runtime_error("a user's model cannot be read back");
    }

    const auto threshold = static_cast<float>(language.blobs.userDefinedThreshold);
    const std::vector<Clip> own(takes.begin() + EnrollmentTakes, takes.end());
    std::vector<Condition> conditions = PlaceConditions(judged.talkers);
    const Condition clean = conditions.front();
    for (Condition& condition : UserConditions(judged.talkers))
    {
        conditions.push_back(std::move(condition));
    }
    for (const Condition& condition : conditions)
    {
        for (const Outcome& outcome : ListenToClips(model, own, condition, pool))
        {
            figures->missed[condition.name].Add(outcome.best.score < threshold);
        }
    }
    CountAccepted(model, ClipsOfOthers(judged.takes, voice, false), threshold, pool, clean, &figures->others);
    CountAccepted(model, ClipsOfOthers(judged.near, voice, true), threshold, pool, clean, &figures->nearOwn);
    CountAccepted(model, ClipsOfOthers(judged.near, voice, false), threshold, pool, clean, &figures->nearOthers);
    const std::vector<Clip> background = EveryFourth(judged.background);
    for (const float score : ListenToBackground(model, background, pool))
    {
        figures->alarms += score >= threshold ? 1 : 0;
    }
    figures->hours += HoursOf(background);
}

} // namespace

void TryUsers(const Language& language, const Judged& judged, engine::WorkerPool* pool, Report* report)
{
    UserFigures figures;
    for (const auto& [voice, takes] : Users(judged.takes))
    {
        TryUser(language, judged, voice, takes, pool, &figures);
    }
    const std::string prefix = judged.phrase + ": user";
    for (const auto& [condition, missed] : figures.missed)
    {
        const bool changed = condition.starts_with("telephone") || condition.starts_with("tempo") ||
                             condition.starts_with("level") || condition.starts_with("after");
        report->Add(prefix + ", missed, " + condition, missed, changed ? 5.0 : UserGoal(condition));
    }
    report->Add(prefix + ", other speakers accepted", figures.others, 5.0);
    report->Add(prefix + ", near phrases of others accepted", figures.nearOthers, 1.0);
    report->Add(prefix + ", near phrases of the user accepted", figures.nearOwn, 15.0);
    report->Add(prefix + ", alarms in all users' background", figures.alarms, 0.0, "");
    report->Add(prefix + ", hours of background, all users", figures.hours, -1.0, "h");
    report->Add(prefix + ", seconds of an enrollment", figures.enrollmentSeconds, 3.0, "s");
    report->Add(prefix + ", bytes of a model", static_cast<double>(figures.modelBytes), 160.0 * 1024.0, "");
}

} // namespace velox::evaluation

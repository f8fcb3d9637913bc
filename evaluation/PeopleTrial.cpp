#include "engine/enrollment/Enrollment.h"
#include "evaluation/Format.h"
#include "evaluation/Listening.h"
#include "evaluation/Trial.h"

#include <map>
#include <stdexcept>

namespace velox::evaluation
{

namespace
{

engine::PhraseModel Enroll(const Language& language, const std::vector<Clip>& takes)
{
    engine::Enrollment enrollment(language.acoustic, language.population);
    for (const Clip& take : takes)
    {
        enrollment.AddTake(WithSilence(take.samples));
    }
    engine::PhraseModel model;
    if (enrollment.Finish(&model) != engine::Status::Success)
    {
        throw std::invalid_argument(takes.front().entry.voice + " cannot be enrolled");
    }
    return model;
}

Share Judge(const std::string& person, const engine::PhraseModel& model, const std::vector<Clip>& takes, float threshold,
            Report* report)
{
    Share accepted;
    for (const Clip& take : takes)
    {
        const float best = BestIn(model, WithSilence(take.samples)).score;
        accepted.Add(best >= threshold);
        report->Note("enrolled " + person + ", heard " + take.entry.path + ": " + Short(static_cast<double>(best)) +
                     (best >= threshold ? ", accepted" : ", refused"));
    }
    return accepted;
}

void TryPerson(const std::vector<Clip>& takes, const std::vector<Clip>& others, const std::vector<Clip>& trainingBackground,
               const std::vector<Clip>& background, const engine::LanguageOptions& options, Report* report)
{
    const std::string& person = takes.front().entry.voice;
    const std::vector<Clip> known(takes.begin(), takes.begin() + EnrollmentTakes);
    const std::vector<Clip> own(takes.begin() + EnrollmentTakes, takes.end());
    const Language language = Train(known, trainingBackground, options);
    const engine::PhraseModel model = Enroll(language, known);
    const auto threshold = static_cast<float>(language.blobs.userDefinedThreshold);
    Share missed = Judge(person, model, own, threshold, report);
    missed.counted = missed.all - missed.counted;
    report->Add("people, " + person + ": own takes missed", missed, {0.0});
    report->Add("people, " + person + ": takes of others accepted", Judge(person, model, others, threshold, report), {0.0});

    engine::WorkerPool pool(options.threads);
    Share alarms;
    for (const float score : ListenToBackground(model, background, &pool))
    {
        alarms.Add(score >= threshold);
    }
    report->Add("people, " + person + ": alarms in the background", alarms.counted, {0.0}, "");
}

} // namespace

void TryPeople(const std::vector<Clip>& people, const std::vector<Clip>& trainingBackground, const std::vector<Clip>& background,
               int threads, Report* report)
{
    std::map<std::string, std::vector<Clip>> takesOf;
    for (const Clip& take : people)
    {
        takesOf[take.entry.voice].push_back(take);
    }
    engine::LanguageOptions options;
    options.threads = threads;
    options.copies = 60; // of three takes
    options.batches = 1500;
    for (const auto& [person, takes] : takesOf)
    {
        std::vector<Clip> others;
        for (const auto& [other, more] : takesOf)
        {
            if (other != person)
            {
                others.insert(others.end(), more.begin(), more.end());
            }
        }
        try
        {
            TryPerson(takes, others, trainingBackground, background, options, report);
        }
        catch (const std::invalid_argument& refused)
        {
            report->Note(person + " cannot be enrolled: " + refused.what());
            const auto missed = static_cast<int>(takes.size() - EnrollmentTakes);
            report->Add("people, " + person + ": own takes missed", Share{missed, missed}, {0.0});
        }
    }
}

} // namespace velox::evaluation

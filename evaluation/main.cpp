// velox_evaluate CORPUS RESULTS SPLIT SEEDS [floors]: trains each phrase of the corpus with seeds 1 to SEEDS and judges it on
// SPLIT (dev or test). Writes RESULTS/table.md, RESULTS/notes.txt, RESULTS/curves-PHRASE-SEED.svg, and RESULTS/comparison for the
// comparison with another recogniser. With "floors" it fails when a figure is worse than its floor.
#include "evaluation/Comparison.h"
#include "evaluation/Corpus.h"
#include "evaluation/Floors.h"
#include "evaluation/Trial.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <set>
#include <thread>

using namespace velox;

namespace
{

evaluation::Judged ReadJudged(const std::vector<evaluation::Entry>& manifest, const std::string& split, const std::string& phrase,
                              const std::set<std::string>& phrases, const std::vector<evaluation::Clip>& background)
{
    evaluation::Judged judged;
    judged.phrase = phrase;
    judged.takes = evaluation::ReadClips(manifest, split, phrase, "take");
    judged.near = evaluation::ReadClips(manifest, split, phrase, "near");
    for (const std::string& other : phrases)
    {
        if (other != phrase)
        {
            const auto takes = evaluation::ReadClips(manifest, split, other, "take");
            judged.otherTakes.insert(judged.otherTakes.end(), takes.begin(), takes.end());
        }
    }
    judged.background = background;
    for (const evaluation::Clip& clip : background)
    {
        if (clip.samples.size() > engine::SampleRate)
        {
            judged.talkers.push_back(clip.samples);
        }
    }
    return judged;
}

/// The phrase that the other recogniser knows: its words are English.
constexpr const char* ComparedPhrase = "a";

/// @return the figures
evaluation::Report Run(const std::string& corpus, const std::string& results, const std::string& split, uint64_t seeds)
{
    const std::vector<evaluation::Entry> manifest = evaluation::ReadManifest(corpus);
    std::set<std::string> phrases;
    for (const evaluation::Entry& entry : manifest)
    {
        if (entry.set == "take")
        {
            phrases.insert(entry.phrase);
        }
    }
    const auto threads = static_cast<int>(std::max(1U, std::thread::hardware_concurrency()));
    engine::WorkerPool pool(threads);
    const auto trainingBackground = evaluation::ReadClips(manifest, "train", "-", "background");
    const auto background = evaluation::ReadClips(manifest, split, "-", "background");
    const auto people = evaluation::ReadClips(manifest, "people", "-", "people");
    std::filesystem::create_directories(results);

    evaluation::Report report;
    const auto write = [&] {
        std::ofstream(results + "/table.md")
            << "Background: " << evaluation::HoursOf(trainingBackground) << " h in the training, "
            << evaluation::HoursOf(background) << " h judged (" << split << ").\n\n"
            << report.Table();
        std::ofstream(results + "/notes.txt") << report.Notes();
    };
    evaluation::TryPeople(people, trainingBackground, background, threads, &report);
    for (uint64_t seed = 1; seed <= seeds; ++seed)
    {
        for (const std::string& phrase : phrases)
        {
            const auto takes = evaluation::ReadClips(manifest, "train", phrase, "take");
            engine::LanguageOptions options;
            options.seed = seed;
            options.threads = threads;
            const evaluation::Language language = evaluation::Train(takes, trainingBackground, options);
            const evaluation::Judged judged = ReadJudged(manifest, split, phrase, phrases, background);
            std::vector<evaluation::Curve> curves;
            evaluation::TryPredefined(language, judged, &pool, &report, &curves);
            evaluation::TryUsers(language, judged, &pool, &report);
            evaluation::TryTakes(language, judged, &pool, &report);
            evaluation::TryStream(language, judged, &report);

            const std::string title = phrase + ", seed " + std::to_string(seed) + ", predefined model, " + split + " voices";
            std::ofstream(results + "/curves-" + phrase + "-" + std::to_string(seed) + ".svg")
                << evaluation::DrawCurves(title, curves);
            if (phrase == ComparedPhrase && seed == 1)
            {
                evaluation::WriteComparison(language, judged, results + "/comparison");
            }
            write(); // after every run, so that an interrupted evaluation leaves what it found
        }
    }
    std::cout << report.Table();
    return report;
}

} // namespace

int main(int count, char** arguments)
{
    const bool floors = count == 6 && arguments[5] == std::string_view("floors");
    if (count != 5 && !floors)
    {
        std::cerr << "velox_evaluate CORPUS RESULTS dev|test SEEDS [floors]\n";
        return 2;
    }
    try
    {
        const evaluation::Report report = Run(arguments[1], arguments[2], arguments[3], std::stoull(arguments[4]));
        const std::vector<std::string> broken = floors ? evaluation::BrokenFloors(report) : std::vector<std::string>();
        for (const std::string& line : broken)
        {
            std::cerr << line << '\n';
        }
        return broken.empty() ? 0 : 1;
    }
    catch (const std::exception& error)
    {
        std::cerr << "velox_evaluate: " << error.what() << '\n';
        return 1;
    }
}

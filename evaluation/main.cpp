// velox_evaluate CORPUS RESULTS SPLIT SEEDS: trains each phrase of the corpus with seeds 1 to SEEDS and judges it on SPLIT (dev
// or test). Writes RESULTS/table.md and RESULTS/curves-PHRASE-SEED.svg.
#include "Corpus.h"
#include "Trial.h"

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

void Run(const std::string& corpus, const std::string& results, const std::string& split, uint64_t seeds)
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
    std::filesystem::create_directories(results);

    evaluation::Report report;
    for (uint64_t seed = 1; seed <= seeds; ++seed)
    {
        for (const std::string& phrase : phrases)
        {
            const auto takes = evaluation::ReadClips(manifest, "train", phrase, "take");
            const evaluation::Language language = evaluation::Train(takes, trainingBackground, seed, threads);
            const evaluation::Judged judged = ReadJudged(manifest, split, phrase, phrases, background);
            std::vector<evaluation::Curve> curves;
            evaluation::TryPredefined(language, judged, &pool, &report, &curves);
            evaluation::TryUsers(language, judged, &pool, &report);
            evaluation::TryTakes(language, judged, &pool, &report);
            evaluation::TryStream(language, judged, &report);

            const std::string title = phrase + ", seed " + std::to_string(seed) + ", predefined model, " + split + " voices";
            std::ofstream(results + "/curves-" + phrase + "-" + std::to_string(seed) + ".svg")
                << evaluation::DrawCurves(title, curves);
            // After every run, so that an interrupted evaluation leaves what it found.
            std::ofstream(results + "/table.md")
                << "Training: " << takes.size() << " takes, background " << evaluation::HoursOf(trainingBackground)
                << " h. Judged on " << split << ": " << evaluation::HoursOf(background) << " h of background.\n\n"
                << report.Table();
            std::ofstream(results + "/notes.txt") << report.Notes();
        }
    }
    std::cout << report.Table();
}

} // namespace

int main(int count, char** arguments)
{
    if (count != 5)
    {
        std::cerr << "velox_evaluate CORPUS RESULTS dev|test SEEDS\n";
        return 2;
    }
    try
    {
        Run(arguments[1], arguments[2], arguments[3], std::stoull(arguments[4]));
    }
    catch (const std::exception& error)
    {
        std::cerr << "velox_evaluate: " << error.what() << '\n';
        return 1;
    }
    return 0;
}

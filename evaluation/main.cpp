// velox_evaluate CORPUS RESULTS SPLIT SEEDS PHRASES PARTS [floors]: trains phrases of the corpus with seeds 1 to SEEDS and judges
// them on SPLIT (dev or test). PHRASES: such as "ab". PARTS: some of predefined,user,take,stream,people,comparison. Writes
// RESULTS/table.md, RESULTS/notes.txt, RESULTS/curves-PHRASE-SEED.svg, and RESULTS/comparison for the comparison with another
// recogniser. With "floors" the training is short, and it fails when a figure is worse than its floor.
#include "evaluation/Comparison.h"
#include "evaluation/Corpus.h"
#include "evaluation/Floors.h"
#include "evaluation/Format.h"
#include "evaluation/Trial.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <set>
#include <thread>

using namespace velox;

namespace
{

/// The phrase that the other recogniser knows: its words are English.
constexpr const char* ComparedPhrase = "a";
/// Steps of a training that is held against the floors.
constexpr int FloorsBatches = 1000;

struct Order
{
    std::string corpus;
    std::string results;
    std::string split;
    uint64_t seeds = 1;
    std::string phrases;
    std::string parts;
    bool floors = false;

    bool Has(const std::string& part) const
    {
        return parts.find(part) != std::string::npos;
    }
};

struct Material
{
    std::vector<evaluation::Entry> manifest;
    std::set<std::string> phrases;
    std::vector<evaluation::Clip> training;   ///< background
    std::vector<evaluation::Clip> background; ///< that is judged
};

Material ReadMaterial(const Order& order)
{
    Material material;
    material.manifest = evaluation::ReadManifest(order.corpus);
    for (const evaluation::Entry& entry : material.manifest)
    {
        if (entry.set == "take")
        {
            material.phrases.insert(entry.phrase);
        }
    }
    material.training = evaluation::ReadClips(material.manifest, "train", "-", "background");
    material.background = evaluation::ReadClips(material.manifest, order.split, "-", "background");
    return material;
}

evaluation::Judged ReadJudged(const Material& material, const std::string& split, const std::string& phrase, uint64_t seed)
{
    evaluation::Judged judged;
    judged.phrase = phrase;
    judged.seed = seed;
    judged.takes = evaluation::ReadClips(material.manifest, split, phrase, "take");
    judged.near = evaluation::ReadClips(material.manifest, split, phrase, "near");
    for (const std::string& other : material.phrases)
    {
        if (other != phrase)
        {
            const auto takes = evaluation::ReadClips(material.manifest, split, other, "take");
            judged.otherTakes.insert(judged.otherTakes.end(), takes.begin(), takes.end());
        }
    }
    judged.background = material.background;
    for (const evaluation::Clip& clip : judged.background)
    {
        if (clip.samples.size() > engine::SampleRate)
        {
            judged.talkers.push_back(clip.samples);
        }
    }
    return judged;
}

std::string Heading(const Material& material, const std::string& split)
{
    const auto hours = [](const std::vector<evaluation::Clip>& clips) {
        return evaluation::Short(evaluation::HoursOf(evaluation::PeopleOf(clips, true))) + " h of people, " +
               evaluation::Short(evaluation::HoursOf(evaluation::PeopleOf(clips, false))) + " h synthesised.";
    };
    return "Background: training: " + hours(material.training) + " " + split + ": " + hours(material.background) + "\n\n";
}

void Try(const Order& order, const Material& material, const std::string& phrase, uint64_t seed, engine::WorkerPool* pool,
         int threads, evaluation::Report* report)
{
    engine::LanguageOptions options;
    options.seed = seed;
    options.batches = order.floors ? FloorsBatches : options.batches;
    options.threads = threads;
    const auto takes = evaluation::ReadClips(material.manifest, "train", phrase, "take");
    const evaluation::Language language = evaluation::Train(takes, material.training, options);
    std::cerr << phrase << ", seed " << seed << ": trained in " << evaluation::Short(language.trainingSeconds) << " s\n";
    const evaluation::Judged judged = ReadJudged(material, order.split, phrase, seed);
    if (order.Has("predefined"))
    {
        std::vector<evaluation::Curve> curves;
        evaluation::TryPredefined(language, judged, pool, report, &curves);
        const std::string title = phrase + ", seed " + std::to_string(seed) + ", predefined model, " + order.split + " voices";
        std::ofstream(order.results + "/curves-" + phrase + "-" + std::to_string(seed) + ".svg")
            << evaluation::DrawCurves(title, curves);
    }
    if (order.Has("user"))
    {
        evaluation::TryUsers(language, judged, pool, report);
    }
    if (order.Has("take"))
    {
        evaluation::TryTakes(language, judged, pool, report);
    }
    if (order.Has("stream"))
    {
        evaluation::TryStream(language, judged, report);
    }
    if (order.Has("comparison") && phrase == ComparedPhrase && seed == 1)
    {
        evaluation::WriteComparison(language, judged, order.results + "/comparison");
    }
}

/// @return the figures
evaluation::Report Run(const Order& order)
{
    const Material material = ReadMaterial(order);
    const auto threads = static_cast<int>(std::max(1U, std::thread::hardware_concurrency()));
    engine::WorkerPool pool(threads);
    std::filesystem::create_directories(order.results);
    evaluation::Report report;
    const auto write = [&] {
        std::ofstream(order.results + "/table.md") << Heading(material, order.split) << report.Table();
        std::ofstream(order.results + "/notes.txt") << report.Notes();
    };
    for (uint64_t seed = 1; seed <= order.seeds; ++seed)
    {
        for (const std::string& phrase : material.phrases)
        {
            if (order.phrases.find(phrase) != std::string::npos)
            {
                Try(order, material, phrase, seed, &pool, threads, &report);
                write(); // after every run, so that an interrupted evaluation leaves what it found
            }
        }
    }
    if (order.Has("people"))
    {
        const auto people = evaluation::ReadClips(material.manifest, "people", "-", "people");
        evaluation::TryPeople(people, material.training, material.background, threads, &report);
        write();
    }
    std::cout << report.Table();
    return report;
}

} // namespace

int main(int count, char** arguments)
{
    const bool floors = count == 8 && arguments[7] == std::string_view("floors");
    if (count != 7 && !floors)
    {
        std::cerr << "velox_evaluate CORPUS RESULTS dev|test SEEDS PHRASES PARTS [floors]\n";
        return 2;
    }
    try
    {
        const evaluation::Report report =
            Run({arguments[1], arguments[2], arguments[3], std::stoull(arguments[4]), arguments[5], arguments[6], floors});
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

#include "evaluation/Comparison.h"

#include "evaluation/AudioFile.h"
#include "evaluation/Listening.h"

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <fstream>

namespace velox::evaluation
{

namespace
{

constexpr std::size_t EveryRecording = 8;

bool IsCompared(const std::string& condition)
{
    return condition == "clean" || condition == "babble 10 dB" || condition == "pink 10 dB" || condition == "room";
}

class ComparisonWriter
{
public:
    ComparisonWriter(const engine::PhraseModel& phraseModel, const std::string& folderPath)
        : model(phraseModel), folder(folderPath), scores(folderPath + "/scores.tsv")
    {
    }

    /// @param group  condition and kind of voice, or "background"
    void Add(const std::string& group, const std::vector<float>& samples)
    {
        const std::string name = std::to_string(number++);
        WriteAudioFile(folder + "/" + name + ".wav", samples);
        float best = 0.0F;
        const std::clock_t start = std::clock();
        for (const engine::Detection& found : Listen(model, samples))
        {
            best = std::max(best, found.score);
        }
        clocks += std::clock() - start;
        scores << name << '\t' << group << '\t' << best << '\t' << samples.size() << '\n';
    }

    double Seconds() const
    {
        return static_cast<double>(clocks) / CLOCKS_PER_SEC;
    }

private:
    const engine::PhraseModel& model;
    std::string folder;
    std::ofstream scores;
    int number = 0;
    std::clock_t clocks = 0;
};

} // namespace

void WriteComparison(const Language& language, const Judged& judged, const std::string& folder)
{
    std::filesystem::create_directories(folder);
    ComparisonWriter writer(language.firmware, folder);
    for (const Condition& condition : PlaceConditions(judged.talkers))
    {
        for (std::size_t i = 0; IsCompared(condition.name) && i < judged.takes.size(); ++i)
        {
            const Clip& take = judged.takes[i];
            if (!take.entry.kind.ends_with("-foreign"))
            {
                const std::string voice = take.entry.kind == "espeak" ? "synthetic" : "natural";
                writer.Add(condition.name + ", " + voice, condition.apply(take.samples, i));
            }
        }
    }
    for (std::size_t i = 0; i < judged.background.size(); i += EveryRecording)
    {
        writer.Add("background", judged.background[i].samples);
    }
    std::ofstream(folder + "/seconds.txt") << writer.Seconds() << '\n';
}

} // namespace velox::evaluation

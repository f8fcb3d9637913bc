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

class ComparisonWriter
{
public:
    ComparisonWriter(const engine::PhraseModel& phraseModel, const std::string& folderPath)
        : model(phraseModel), folder(folderPath), scores(folderPath + "/scores.tsv")
    {
    }

    /// @param group  condition, or "background"
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
    for (const Condition& condition : Conditions(judged.talkers))
    {
        for (std::size_t i = 0; i < judged.takes.size(); ++i)
        {
            const Clip& take = judged.takes[i];
            if (take.entry.kind == "natural")
            {
                writer.Add(condition.name, condition.apply(take.samples, i));
            }
        }
    }
    for (const Clip& recording : PeopleOf(judged.background, true))
    {
        writer.Add("background", recording.samples);
    }
    std::ofstream(folder + "/seconds.txt") << writer.Seconds() << '\n';
}

} // namespace velox::evaluation

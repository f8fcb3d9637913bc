#include "evaluation/Comparison.h"

#include "evaluation/AudioFile.h"
#include "evaluation/Listening.h"

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <fstream>

namespace velox::evaluation
{

void WriteComparison(const Language& language, const Judged& judged, const std::string& folder)
{
    std::filesystem::create_directories(folder);
    std::ofstream scores(folder + "/scores.tsv");
    int number = 0;
    std::clock_t clocks = 0;
    const auto add = [&](const std::string& group, const std::vector<float>& samples) {
        const std::string name = std::to_string(number++);
        WriteAudioFile(folder + "/" + name + ".wav", samples);
        const std::clock_t start = std::clock();
        const float best = BestIn(language.firmware, samples).score;
        clocks += std::clock() - start;
        scores << name << '\t' << group << '\t' << best << '\t' << samples.size() << '\n';
    };
    for (const Condition& condition : Conditions(judged.talkers))
    {
        for (std::size_t i = 0; i < judged.takes.size(); ++i)
        {
            if (judged.takes[i].entry.kind == "natural")
            {
                add(condition.name, condition.apply(judged.takes[i].samples, i));
            }
        }
    }
    for (const Clip& recording : PeopleOf(judged.background, true))
    {
        add("background", recording.samples);
    }
    std::ofstream(folder + "/seconds.txt") << static_cast<double>(clocks) / CLOCKS_PER_SEC << '\n';
}

} // namespace velox::evaluation

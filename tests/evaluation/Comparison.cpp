#include "evaluation/Comparison.h"

#include "evaluation/AudioFile.h"
#include "evaluation/Condition.h"
#include "tests/engine/support/TinyLanguage.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>

namespace ComparisonTests
{

using namespace velox::evaluation;

TEST(Comparison, WritesWhatIsComparedWithTheEnginesScores)
{
    Language language;
    language.firmware = TinyLanguage::Phrase();
    Judged judged;
    const std::vector<float> phrase = TinyLanguage::SayPhrase();
    judged.takes = {{{"dev", "a", "take", "formant", "m1", "m", ""}, phrase},
                    {{"dev", "a", "take", "natural", "slt", "f", ""}, phrase},
                    {{"dev", "a", "take", "natural-accent", "m2", "m", ""}, phrase}};
    judged.background = {{{"dev", "-", "background", "human", "h", "-", ""}, std::vector<float>(16'000)},
                         {{"dev", "-", "background", "formant", "m1", "m", ""}, std::vector<float>(16'000)}};
    judged.talkers = {TinyLanguage::Whisper()};
    const TemporaryFolder folder;
    WriteComparison(language, judged, folder.Path() + "/comparison");

    std::map<std::string, int> groups;
    std::ifstream scores(folder.Path() + "/comparison/scores.tsv");
    std::string name;
    std::string group;
    float best = 0.0F;
    std::size_t samples = 0;
    while (std::getline(scores, name, '\t') && std::getline(scores, group, '\t') && scores >> best >> samples >> std::ws)
    {
        ++groups[group];
        EXPECT_EQ(ReadAudioFile(folder.Path() + "/comparison/" + name + ".wav").size(), samples);
        EXPECT_EQ(best > 0.0F, group != "background") << group;
    }
    // Natural voices of the phrase's own language, and people.
    EXPECT_EQ(groups.size(), Conditions(judged.talkers).size() + 1);
    for (const auto& [what, count] : groups)
    {
        EXPECT_EQ(count, 1) << what;
    }
    EXPECT_TRUE(std::filesystem::exists(folder.Path() + "/comparison/seconds.txt"));
}

} // namespace ComparisonTests

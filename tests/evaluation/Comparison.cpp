#include "evaluation/Comparison.h"

#include "evaluation/AudioFile.h"
#include "tests/engine/support/TinyLanguage.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <map>

using namespace velox::evaluation;
using testing::Pair;
using testing::UnorderedElementsAre;

TEST(Comparison, WritesWhatIsComparedWithTheEnginesScores)
{
    Language language;
    language.firmware = TinyLanguage::Phrase();
    Judged judged;
    const std::vector<float> phrase = TinyLanguage::SayPhrase();
    judged.takes = {{{"dev", "a", "take", "espeak", "m1", ""}, phrase},
                    {{"dev", "a", "take", "flite", "slt", ""}, phrase},
                    {{"dev", "a", "take", "espeak-foreign", "m2", ""}, phrase}};
    judged.background.assign(9, {{}, std::vector<float>(16'000)});
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
        EXPECT_EQ(best > 0.0F, group.starts_with("clean") || (best > 0.0F && group != "background")) << group;
    }
    // A voice of another language is not compared; of the background every eighth recording is.
    EXPECT_THAT(groups, UnorderedElementsAre(Pair("clean, synthetic", 1), Pair("clean, natural", 1),
                                             Pair("babble 10 dB, synthetic", 1), Pair("babble 10 dB, natural", 1),
                                             Pair("pink 10 dB, synthetic", 1), Pair("pink 10 dB, natural", 1),
                                             Pair("room, synthetic", 1), Pair("room, natural", 1), Pair("background", 2)));
    EXPECT_TRUE(std::filesystem::exists(folder.Path() + "/comparison/seconds.txt"));
}

#include "evaluation/Corpus.h"

#include "evaluation/AudioFile.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace CorpusTests
{

using namespace velox::evaluation;

/// A folder with a manifest of four recordings.
class Corpus : public testing::Test
{
protected:
    Corpus()
    {
        std::string manifest;
        for (const std::string line : {"dev\ta\ttake\tformant\tespeak-m1\tm\t", "dev\ta\tnear-half\tnatural\tflite-slt\tf\t",
                                       "test\ta\ttake\tformant\tespeak-f1\tf\t", "dev\t-\tbackground\thuman\thuman-ro\t-\t"})
        {
            const std::string file = folder.Path() + "/" + std::to_string(files++) + ".wav";
            WriteAudioFile(file, std::vector<float>(static_cast<std::size_t>(1600 * files), 0.25F));
            manifest += line;
            manifest += file + "\n";
        }
        WriteWholeFile(folder.Path() + "/manifest.tsv", manifest);
    }

    TemporaryFolder folder;
    int files = 0;
};

TEST_F(Corpus, AManifestHasALineForEachRecording)
{
    const std::vector<Entry> entries = ReadManifest(folder.Path());
    ASSERT_EQ(entries.size(), 4U);
    EXPECT_EQ(entries[1].split, "dev");
    EXPECT_EQ(entries[1].phrase, "a");
    EXPECT_EQ(entries[1].set, "near-half");
    EXPECT_EQ(entries[1].kind, "natural");
    EXPECT_EQ(entries[1].voice, "flite-slt");
    EXPECT_EQ(entries[1].sex, "f");
    EXPECT_EQ(entries[1].path, folder.Path() + "/1.wav");
    EXPECT_THROW(ReadManifest(folder.Path() + "/none"), std::runtime_error);
}

TEST_F(Corpus, ClipsAreThoseOfTheSplitThePhraseAndTheSet)
{
    const std::vector<Entry> manifest = ReadManifest(folder.Path());
    const struct
    {
        const char* split;
        const char* phrase;
        const char* set;
        std::vector<std::string> voices;
    } cases[]{{"dev", "a", "take", {"espeak-m1"}},          {"dev", "a", "near", {"flite-slt"}},
              {"dev", "a", "", {"espeak-m1", "flite-slt"}}, {"dev", "-", "background", {"human-ro"}},
              {"test", "a", "take", {"espeak-f1"}},         {"dev", "b", "take", {}}};
    for (const auto& own : cases)
    {
        std::vector<std::string> voices;
        for (const Clip& clip : ReadClips(manifest, own.split, own.phrase, own.set))
        {
            voices.push_back(clip.entry.voice);
        }
        EXPECT_EQ(voices, own.voices) << own.split << " " << own.phrase << " " << own.set;
    }
}

TEST_F(Corpus, PeopleAreToldFromSynthesisers)
{
    const std::vector<Clip> clips = ReadClips(ReadManifest(folder.Path()), "dev", "-", "");
    EXPECT_EQ(PeopleOf(clips, true).size(), 1U);
    EXPECT_TRUE(PeopleOf(clips, false).empty());
}

TEST_F(Corpus, HoursAreThoseOfAllClips)
{
    EXPECT_EQ(HoursOf({}), 0.0);
    EXPECT_DOUBLE_EQ(HoursOf(ReadClips(ReadManifest(folder.Path()), "dev", "a", "")), (0.1 + 0.2) / 3600.0);
}

} // namespace CorpusTests

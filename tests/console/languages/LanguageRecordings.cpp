#include "console/languages/LanguageRecordings.h"

#include "console/text/CommandFailure.h"
#include "console/text/Interruption.h"
#include "console/text/Utf8Path.h"
#include "tests/console/support/SoundFile.h"
#include "tests/engine/support/TinyLanguage.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace LanguageRecordingsTests
{

using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;
using namespace velox::console;

class LanguageRecordings : public testing::Test
{
protected:
    std::filesystem::path Path(const std::string& name) const
    {
        return PathFromUtf8(folder.Path()) / PathFromUtf8(name);
    }
    void Record(const std::string& name, std::span<const float> samples) const
    {
        std::filesystem::create_directories(Path(name).parent_path());
        SoundFile::Write(Path(name), SoundFile::FloatWav(samples));
    }
    velox::console::LanguageRecordings Read()
    {
        std::filesystem::create_directories(Path("takes"));
        std::filesystem::create_directories(Path("other"));
        return ReadLanguageRecordings(FindLanguageFiles(Path("takes"), {Utf8(Path("other"))}), &progress);
    }

    TemporaryFolder folder;
    Progress progress{nullptr};
};

TEST_F(LanguageRecordings, AVoiceIsASubFolderOrTheNamesBeginning)
{
    const struct
    {
        std::string file;
        std::string voice;
    } cases[]{
        {"anna/1.wav", "anna"}, {"anna/quiet/bert-1.wav", "anna"}, {"anna-1.wav", "anna"}, {"anna_1-2.wav", "anna"},
        {"anna.wav", "anna"},   {"anna 1.wav", "anna 1"},          {"-1.wav", ""},         {"zo\xC3\xAB_1.wav", "zo\xC3\xAB"}};
    for (const auto& own : cases)
    {
        SCOPED_TRACE(own.file);
        EXPECT_EQ(VoiceOf(PathFromUtf8(own.file)), own.voice);
    }
}

TEST_F(LanguageRecordings, EveryFileBelowTheFoldersIsReadInTheOrderOfNames)
{
    Record("takes/b/2.wav", TinyLanguage::SayPhrase({}, 1));
    Record("takes/b/1.wav", TinyLanguage::SayPhrase({}, 2));
    Record("takes/a_1.wav", TinyLanguage::SayPhrase({}, 3));
    Record("takes/.hidden/1.wav", TinyLanguage::SayPhrase());
    Record("takes/.hidden.wav", TinyLanguage::SayPhrase());
    Record("other/deep/in/x.wav", std::vector<float>(32'000, 0.01F));
    const auto read = Read();
    ASSERT_THAT(read.material.takes, SizeIs(3));
    EXPECT_THAT(read.material.takes[0].name, HasSubstr("a_1.wav"));
    EXPECT_THAT(read.material.takes[1].name, HasSubstr("1.wav"));
    EXPECT_THAT(read.material.takes[2].name, HasSubstr("2.wav"));
    EXPECT_EQ(read.material.takes[0].samples, TinyLanguage::SayPhrase({}, 3));
    EXPECT_EQ(read.material.takes[2].voice, "b");
    EXPECT_THAT(VoicesOf(read.material.takes), ElementsAre("a", "b"));
    EXPECT_THAT(read.material.background, SizeIs(1));
    EXPECT_DOUBLE_EQ(read.BackgroundHours(), 2.0 / 3600.0);
    EXPECT_TRUE(read.leftOut.empty());
}

TEST_F(LanguageRecordings, UselessTakesAreNamedWithReasonAndPlace)
{
    std::vector<float> clipped = TinyLanguage::SayPhrase();
    for (float& sample : clipped)
    {
        sample = std::clamp(20.0F * sample, -1.0F, 1.0F);
    }
    Record("takes/a-clipped.wav", clipped);
    Record("takes/b-quiet.wav", TinyLanguage::Whisper());
    Record("takes/c-silent.wav", std::vector<float>(16'000, 0.0F));
    WriteWholeFile(Utf8(Path("takes/d-notes.txt")), "no audio");
    Record("takes/e-good.wav", TinyLanguage::SayPhrase());
    const auto read = Read();
    ASSERT_THAT(read.material.takes, SizeIs(1));
    const struct
    {
        std::string file;
        std::string code;
        std::string reason;
    } cases[]{{"a-clipped.wav", "Clipped", "the first at 0.5"},
              {"b-quiet.wav", "TooQuiet", "at least -50 dB"},
              {"c-silent.wav", "NoSpeech", "no speech in 1.00 s"},
              {"d-notes.txt", "Unreadable", "is not a sound file"}};
    ASSERT_THAT(read.leftOut, SizeIs(std::size(cases)));
    for (std::size_t i = 0; i < std::size(cases); ++i)
    {
        SCOPED_TRACE(cases[i].file);
        EXPECT_THAT(read.leftOut[i].title, HasSubstr(cases[i].file));
        EXPECT_EQ(read.leftOut[i].status, "left out");
        ASSERT_THAT(read.leftOut[i].remarks, SizeIs(1));
        EXPECT_EQ(read.leftOut[i].remarks[0].code, cases[i].code);
        EXPECT_THAT(read.leftOut[i].remarks[0].text, HasSubstr(cases[i].reason));
        EXPECT_NE(read.leftOut[i].remarks[0].fix, "");
    }
}

TEST_F(LanguageRecordings, TakesThatAreCutTightlyAreKept)
{
    const std::vector<std::size_t> phrase{0, 1, 2, 3};
    Record("takes/a.wav", TinyLanguage::Say(phrase, 0, 0));
    EXPECT_THAT(Read().material.takes, SizeIs(1));
}

TEST_F(LanguageRecordings, BackgroundMayBeRecordingsAndPatterns)
{
    for (const std::string name : {"one.wav", "two-a.wav", "two-b.wav", "three.wav"})
    {
        Record(name, std::vector<float>(16'000, 0.01F));
    }
    std::filesystem::create_directories(Path("takes"));
    const LanguageFiles files = FindLanguageFiles(Path("takes"), {Utf8(Path("one.wav")), Utf8(Path("two-?.wav"))});
    EXPECT_THAT(files.all, ElementsAre(Path("one.wav"), Path("two-a.wav"), Path("two-b.wav")));
    EXPECT_THAT(ReadLanguageRecordings(files, &progress).material.background, SizeIs(3));
}

TEST_F(LanguageRecordings, WhatIsNotThereIsNamed)
{
    std::filesystem::create_directories(Path("takes"));
    const struct
    {
        std::string takes;
        std::string background;
        std::string named;
    } cases[]{{"missing", "takes", "missing"}, {"takes", "no-other", "no-other"}, {"takes", "none-*.wav", "none-*.wav"}};
    for (const auto& own : cases)
    {
        SCOPED_TRACE(own.named);
        try
        {
            FindLanguageFiles(Path(own.takes), {Utf8(Path(own.background))});
            ADD_FAILURE();
        }
        catch (const CommandFailure& failure)
        {
            EXPECT_EQ(failure.exitCode, ExitCode::BadInput);
            EXPECT_THAT(failure.what(), HasSubstr(own.named));
        }
    }
}

TEST_F(LanguageRecordings, ManyFilesKeepTheirOrder)
{
    for (int i = 100; i < 130; ++i)
    {
        // Longer and shorter ones, so that some are read while others are not done.
        Record("other/" + std::to_string(i) + ".wav",
               std::vector<float>(i % 3 == 0 ? 300'000 : 100, static_cast<float>(i) / 1000));
    }
    const auto read = Read();
    ASSERT_THAT(read.material.background, SizeIs(30));
    for (std::size_t i = 0; i < read.material.background.size(); ++i)
    {
        EXPECT_FLOAT_EQ(read.material.background[i].front(), static_cast<float>(100 + i) / 1000);
    }
}

TEST_F(LanguageRecordings, OddSoundIsRemarkedOnceOfEachKind)
{
    const std::vector<float> loud(16'000, 1.5F);
    std::vector<float> cancelling(32'000, 0.25F);
    for (std::size_t i = 0; i < cancelling.size(); i += 2)
    {
        cancelling[i] = -0.25F;
    }
    Record("other/a.wav", loud);
    Record("other/b.wav", loud);
    SoundFile::Write(Path("other/c.wav"), SoundFile::Wav(cancelling, 16'000, 2));
    const auto read = Read();
    EXPECT_THAT(read.material.background, SizeIs(3));
    ASSERT_THAT(read.oddities, SizeIs(2));
    for (const Remark& remark : read.oddities)
    {
        EXPECT_EQ(remark.tone, Tone::Warning);
        const bool isLoud = remark.text.find("beyond full scale") != std::string::npos;
        EXPECT_THAT(remark.text, HasSubstr(isLoud ? "a.wav: 16000 samples" : "c.wav: the channels cancel each other"));
        EXPECT_EQ(remark.text.find("so in 2 recordings") != std::string::npos, isLoud) << remark.text;
    }
}

TEST_F(LanguageRecordings, CanBeInterrupted)
{
    Record("takes/a.wav", TinyLanguage::SayPhrase());
    RequestInterruption();
    EXPECT_THROW(Read(), CommandFailure);
    ForgetInterruption();
}

} // namespace LanguageRecordingsTests

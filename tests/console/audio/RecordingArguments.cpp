#include "console/audio/RecordingArguments.h"

#include "console/text/CommandFailure.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace RecordingArgumentsTests
{

using velox::console::CommandFailure;
using velox::console::FindRecordings;

class RecordingArguments : public testing::Test
{
protected:
    void SetUp() override
    {
        for (const char* name : {"take 10.wav", "take 2.WAV", "take 1.flac", "notes.txt", ".hidden.wav"})
        {
            std::ofstream(folder.Path() + "/" + name) << "x";
        }
        std::filesystem::create_directory(folder.Path() + "/sub.wav");
    }

    /// The names alone.
    std::vector<std::string> Find(const std::string& argument) const
    {
        std::vector<std::string> names;
        for (const std::string& found : FindRecordings({folder.Path() + "/" + argument}))
        {
            names.push_back(std::filesystem::path(found).filename().string());
        }
        return names;
    }

    TemporaryFolder folder;
};

using Names = std::vector<std::string>;

TEST_F(RecordingArguments, AFolderStandsForItsSoundsInTheOrderOfTheirNumbers)
{
    EXPECT_EQ(Find("."), (Names{"take 1.flac", "take 2.WAV", "take 10.wav"}));
}

TEST_F(RecordingArguments, APatternStandsForTheFilesThatFit)
{
    EXPECT_EQ(Find("*.wav"), (Names{"take 2.WAV", "take 10.wav"}));
    EXPECT_EQ(Find("take ?.*"), (Names{"take 1.flac", "take 2.WAV"}));
    EXPECT_EQ(Find("*"), (Names{"notes.txt", "take 1.flac", "take 2.WAV", "take 10.wav"}));
}

TEST_F(RecordingArguments, AnyOtherArgumentStaysAsItIs)
{
    EXPECT_EQ(FindRecordings({"none.wav", "take 1.wav"}), (Names{"none.wav", "take 1.wav"}));
}

TEST_F(RecordingArguments, WhatStandsForNothingIsAnError)
{
    EXPECT_THROW(Find("*.ogg"), CommandFailure);
    EXPECT_THROW(Find("sub.wav"), CommandFailure);
    EXPECT_THROW(FindRecordings({folder.Path() + "/none/*.wav"}), CommandFailure);
}

} // namespace RecordingArgumentsTests

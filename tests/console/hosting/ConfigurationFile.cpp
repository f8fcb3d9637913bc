#include "console/hosting/ConfigurationFile.h"

#include "console/text/CommandFailure.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace ConfigurationFileTests
{

namespace console = velox::console;

class ConfigurationFile : public testing::Test
{
protected:
    console::ConfigurationFile Read(const std::string& xml) const
    {
        WriteWholeFile(File(), xml);
        return console::ReadConfigurationFile(File());
    }

    std::string Refusal(const std::string& xml) const
    {
        try
        {
            Read(xml);
        }
        catch (const console::CommandFailure& failure)
        {
            EXPECT_EQ(failure.exitCode, console::ExitCode::BadConfiguration);
            return failure.what();
        }
        return "taken";
    }

    std::string File() const
    {
        return folder.Path() + "/configuration.xml";
    }

    TemporaryFolder folder;
};

TEST_F(ConfigurationFile, FilesAreJoinedToTheDirectory)
{
    const auto configuration = Read("<r directory='C:\\Velox' constraints='C:\\c.txt'><l id='0x409' qualityThreshold='7'>"
                                    "<keyphraseModel>kp.bin</keyphraseModel></l></r>");
    const console::ConfiguredLanguage* language = configuration.Find(1033);
    ASSERT_NE(language, nullptr);
    EXPECT_EQ(language->keyphraseModel, "C:\\Velox\\kp.bin");
    EXPECT_EQ(language->qualityThreshold, 7);
    EXPECT_TRUE(language->acousticModel.empty());
    EXPECT_EQ(configuration.constraints, "C:\\c.txt");
    EXPECT_EQ(configuration.Find(1031), nullptr);
}

TEST_F(ConfigurationFile, WhatIsMissingStaysEmpty)
{
    const auto configuration = Read("<r><l id='1033'/></r>");
    EXPECT_TRUE(configuration.directory.empty());
    EXPECT_EQ(configuration.languages.at(0).qualityThreshold, std::nullopt);
}

TEST_F(ConfigurationFile, WhatIsNotWellFormedIsRefusedWithItsLine)
{
    EXPECT_THAT(Refusal("<r>\n<a></b>\n</r>"), testing::HasSubstr("line 2 cannot be used: An element is closed"));
    EXPECT_THAT(Refusal(""), testing::HasSubstr("The file has no content."));
}

TEST_F(ConfigurationFile, AThresholdFileBeginsWithANumber)
{
    struct Case
    {
        const char* content;
        std::optional<double> threshold;
    };
    for (const Case& c : {Case{"0.75\n", 0.75}, Case{"  95 and a comment", 95.0}, Case{"-1.5", -1.5}, Case{"2e-1", 0.2},
                          Case{"none", std::nullopt}, Case{"", std::nullopt}})
    {
        SCOPED_TRACE(c.content);
        WriteWholeFile(folder.Path() + "/threshold.txt", c.content);
        EXPECT_EQ(console::ReadThreshold(folder.Path() + "/threshold.txt"), c.threshold);
    }
    EXPECT_EQ(console::ReadThreshold(folder.Path() + "/missing.txt"), std::nullopt);
}

} // namespace ConfigurationFileTests

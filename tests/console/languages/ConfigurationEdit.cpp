#include "console/languages/ConfigurationEdit.h"

#include "console/hosting/ConfigurationFile.h"
#include "console/text/CommandFailure.h"
#include "console/text/Utf8Path.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <tinyxml2.h>

namespace ConfigurationEditTests
{

using testing::HasSubstr;
using testing::Not;
using namespace velox::console;

class ConfigurationEdit : public testing::Test
{
protected:
    std::filesystem::path File() const
    {
        return PathFromUtf8(folder.Path()) / "config.xml";
    }
    std::filesystem::path Models() const
    {
        return (PathFromUtf8(folder.Path()) / "models").lexically_normal();
    }

    void Write(const std::string& text) const
    {
        WriteWholeFile(Utf8(File()), text);
    }
    void WriteLanguages(const std::string& languages) const
    {
        Write("<keywords directory=\"" + Utf8(Models()) + "\" constraints=\"c.txt\">" + languages + "</keywords>");
    }

    static LanguageEntry Entry()
    {
        return {1033,
                std::nullopt,
                {{"keyphraseModel", "kp.bin"},
                 {"acousticModel", "am.bin"},
                 {"znormPopulation", "zn.bin"},
                 {"fwBlob", "fw.bin"},
                 {"preDefinedKpdSensitivity", "pre.txt"},
                 {"userDefinedKpdSensitivity", "user.txt"}}};
    }

    std::string Edited(bool replace = false) const
    {
        return AddLanguage(File(), Models(), Entry(), replace).text;
    }

    /// The failure's text; empty when it succeeds.
    std::string Refusal() const
    {
        try
        {
            Edited();
        }
        catch (const CommandFailure& failure)
        {
            EXPECT_EQ(failure.exitCode, ExitCode::BadConfiguration);
            EXPECT_NE(failure.fix, "");
            return failure.what();
        }
        return {};
    }

    TemporaryFolder folder;
};

TEST_F(ConfigurationEdit, ANewConfigurationHasEverythingThatTheLibraryReads)
{
    const auto edit = AddLanguage(File(), Models(), Entry(), false);
    EXPECT_FALSE(edit.replaces);
    EXPECT_EQ(edit.constraints, Models() / "constraints.txt");
    EXPECT_FALSE(std::filesystem::exists(File()));
    Write(edit.text);
    const ConfigurationFile read = ReadConfigurationFile(File());
    EXPECT_EQ(read.directory, Models());
    EXPECT_EQ(read.constraints, Models() / "constraints.txt");
    const ConfiguredLanguage* language = read.Find(1033);
    ASSERT_NE(language, nullptr);
    EXPECT_EQ(language->qualityThreshold, DefaultQualityThreshold);
    EXPECT_THAT(Utf8(language->keyphraseModel), testing::EndsWith("kp.bin"));
    EXPECT_THAT(Utf8(language->acousticModel), testing::EndsWith("am.bin"));
    EXPECT_THAT(Utf8(language->znormPopulation), testing::EndsWith("zn.bin"));
    EXPECT_THAT(Utf8(language->firmwareModel), testing::EndsWith("fw.bin"));
    EXPECT_THAT(Utf8(language->preDefinedThreshold), testing::EndsWith("pre.txt"));
    EXPECT_THAT(Utf8(language->userDefinedThreshold), testing::EndsWith("user.txt"));
}

TEST_F(ConfigurationEdit, WhatWasThereStays)
{
    Write("\xEF\xBB\xBF<?xml version=\"1.0\"?>\n<!-- first -->\n<own directory=\"" + Utf8(Models()) +
          "\" constraints=\"c.txt\" more=\"1\">\n<!-- second -->\n<italian id=\"1040\" qualityThreshold=\"3\"><!-- third -->"
          "<fwBlob>a &amp; b.bin</fwBlob><other/></italian>\n<german id=\"1031\"/><!-- last --></own>\n<!-- end -->\n");
    const std::string text = Edited();
    std::size_t at = 0;
    for (const std::string piece :
         {"\xEF\xBB\xBF<?xml version=\"1.0\"?>", "<!-- first -->", "<own ", "more=\"1\"", "<!-- second -->",
          "<italian id=\"1040\" qualityThreshold=\"3\">", "<!-- third -->", "<fwBlob>a &amp; b.bin</fwBlob>", "<other/>",
          "</italian>", "<german id=\"1031\"/>", "<!-- last -->", "<language id=\"1033\"", "</own>", "<!-- end -->"})
    {
        SCOPED_TRACE(piece);
        const std::size_t found = text.find(piece, at);
        ASSERT_NE(found, std::string::npos) << text;
        at = found;
    }
}

TEST_F(ConfigurationEdit, ALanguageThatIsThereIsChangedInItsPlaceOnlyWhenAsked)
{
    WriteLanguages(
        "<a id=\"0x409\" qualityThreshold=\"3\" note=\"x\"><!-- why --><fwBlob>old.bin</fwBlob><more/></a><b id=\"1040\"/>");
    EXPECT_THAT(Refusal(), HasSubstr("has the language 1033 (en-US) already"));
    const std::string text = Edited(true);
    EXPECT_THAT(text, HasSubstr("<a id=\"1033\" qualityThreshold=\"3\" note=\"x\">"));
    EXPECT_THAT(text, HasSubstr("<!-- why -->"));
    EXPECT_THAT(text, HasSubstr("<fwBlob>fw.bin</fwBlob>"));
    EXPECT_THAT(text, HasSubstr("<more/>"));
    EXPECT_THAT(text, HasSubstr("<userDefinedKpdSensitivity>user.txt</userDefinedKpdSensitivity>"));
    EXPECT_THAT(text, Not(HasSubstr("old.bin")));
    EXPECT_LT(text.find("<a id"), text.find("<b id"));
    EXPECT_TRUE(AddLanguage(File(), Models(), Entry(), true).replaces);
}

TEST_F(ConfigurationEdit, TheQualityThresholdIsTheOneAskedFor)
{
    WriteLanguages("<a id=\"1033\" qualityThreshold=\"3\"/>");
    LanguageEntry entry = Entry();
    entry.qualityThreshold = -1;
    EXPECT_THAT(AddLanguage(File(), Models(), entry, true).text, HasSubstr("qualityThreshold=\"-1\""));
}

TEST_F(ConfigurationEdit, FilesThatAnotherLanguageSharesAreNotReplaced)
{
    WriteLanguages("<a id=\"1033\"/><b id=\"2057\"><acousticModel>am.bin</acousticModel></b>");
    EXPECT_THAT(Refusal(), HasSubstr("Language 2057 (en-GB) uses the file am.bin, too"));
}

TEST_F(ConfigurationEdit, TheFolderMustBeTheConfigurationsOwn)
{
    Write("<keywords directory=\"elsewhere\"/>");
    EXPECT_THAT(Refusal(), HasSubstr("names elsewhere, not"));
    Write("<keywords/>");
    EXPECT_THAT(Edited(), HasSubstr("directory=\"" + Utf8(Models()) + "\""));
}

TEST_F(ConfigurationEdit, AMalformedConfigurationIsLeftAlone)
{
    const struct
    {
        std::string text;
        std::string error;
    } cases[]{{"<a>\n<b></a>", "line 2 cannot be used: An element is closed by another's name"},
              {"", "The file has no content"},
              {"<!-- -->", "There is no element in the file"}};
    for (const auto& own : cases)
    {
        SCOPED_TRACE(own.text);
        Write(own.text);
        EXPECT_THAT(Refusal(), HasSubstr(own.error));
        EXPECT_EQ(ReadWholeFile(Utf8(File())), own.text);
    }
}

} // namespace ConfigurationEditTests

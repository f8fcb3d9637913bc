#include "console/hosting/ConfigurationXml.h"

#include "console/text/CommandFailure.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace ConfigurationXmlTests
{

using namespace velox::console;
using testing::HasSubstr;

class ConfigurationXml : public testing::Test
{
protected:
    std::optional<XmlProblem> Load(const std::string& xml)
    {
        WriteWholeFile(File(), xml);
        return LoadConfigurationXml(File(), &document);
    }

    std::string File() const
    {
        return folder.Path() + "/configuration.xml";
    }

    TemporaryFolder folder;
    tinyxml2::XMLDocument document;
};

TEST_F(ConfigurationXml, EachFaultHasItsWordsItsLineAndItsFix)
{
    const struct
    {
        std::string xml;
        int line;
        const char* message;
    } cases[]{{"", 0, "The file has no content. (The library logs it as XML_ERROR_EMPTY_DOCUMENT.)"},
              {"<r>\n<a></b></r>", 2, "An element is closed by another's name, or not at all."},
              {"<r a=1/>", 1, "An attribute has no quotes"},
              {"<r>\n<!-- ", 2, "A comment does not end."},
              {"<!-- nothing -->", 1, "There is no element in the file."},
              {"\xFF\xFE<\0r\0", 1, "UTF-16"},
              {"\xFE\xFF", 1, "UTF-16"}};
    for (const auto& own : cases)
    {
        SCOPED_TRACE(own.xml);
        const auto problem = Load(own.xml);
        ASSERT_TRUE(problem.has_value());
        EXPECT_EQ(problem->line, own.line);
        EXPECT_THAT(problem->message, HasSubstr(own.message));
        EXPECT_FALSE(problem->fix.empty());
    }
}

TEST_F(ConfigurationXml, WhatIsNoFileIsSaid)
{
    EXPECT_EQ(LoadConfigurationXml(folder.Path(), &document).value().message, "This is a folder, not a configuration file.");
    EXPECT_EQ(LoadConfigurationXml(folder.Path() + "/none.xml", &document).value().message, "There is no such file.");
}

TEST_F(ConfigurationXml, AGoodFileIsLoaded)
{
    EXPECT_FALSE(Load("<r x='1'/>").has_value());
    EXPECT_STREQ(document.RootElement()->Attribute("x"), "1");
    EXPECT_NO_THROW(RequireConfigurationXml(File(), &document));
}

TEST_F(ConfigurationXml, WhatTheParserTakesIsLoadedBehindAMarkOfUtf16Too)
{
    EXPECT_FALSE(Load("\xFF\xFE<r x='1'/>").has_value());
    EXPECT_STREQ(document.RootElement()->Attribute("x"), "1");
}

TEST_F(ConfigurationXml, CommandsSayItInOneSentence)
{
    try
    {
        RequireConfigurationXml(folder.Path() + "/none.xml", &document);
        ADD_FAILURE() << "it was loaded";
    }
    catch (const CommandFailure& failure)
    {
        EXPECT_EQ(failure.exitCode, ExitCode::BadConfiguration);
        EXPECT_THAT(failure.what(), HasSubstr("none.xml cannot be used: There is no such file."));
        EXPECT_FALSE(failure.fix.empty());
    }
}

} // namespace ConfigurationXmlTests

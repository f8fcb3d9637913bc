#include "console/doctor/ConfigurationXml.h"

#include "console/text/Utf8Path.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

using namespace velox::console;
using testing::HasSubstr;
using testing::SizeIs;

namespace
{

class ConfigurationXml : public testing::Test
{
protected:
    bool Load(std::string_view text)
    {
        WriteWholeFile(path, text);
        findings.clear();
        return LoadConfigurationXml(PathFromUtf8(path), &document, &findings);
    }

    TemporaryFolder folder;
    std::string path = folder.Path() + "/c.xml";
    tinyxml2::XMLDocument document;
    Findings findings;
};

} // namespace

TEST_F(ConfigurationXml, AWellFormedFileIsLoaded)
{
    ASSERT_TRUE(Load("<!-- first -->\n<keywords/>"));
    EXPECT_STREQ(document.FirstChildElement()->Name(), "keywords");
    ASSERT_THAT(findings, SizeIs(1));
    EXPECT_EQ(findings[0].severity, Severity::Good);
    EXPECT_EQ(findings[0].line, 2);
}

TEST_F(ConfigurationXml, WhatCannotBeLoadedFailsEveryOperation)
{
    const struct
    {
        std::string_view text;
        int line;
        std::string_view message;
    } cases[]{{"", 0, "no content. (The library logs it as XML_ERROR_EMPTY_DOCUMENT.)"},
              {"<a>\n<b>\n</a>", 2, "closed by another's name"},
              {"<a>\n<b c=1/></a>", 2, "no quotes"},
              {"<a>\n<!-- x", 2, "A comment does not end."},
              {"<a>\n<![CDATA[x", 2, "A CDATA section does not end."},
              {"<?xml ", 1, "The XML declaration does not end."},
              {"\xFF\xFE<", 1, "UTF-16"},
              {"\xFE\xFF<", 1, "UTF-16"},
              {"<!-- nothing -->", 1, "no element"}};
    for (const auto& own : cases)
    {
        SCOPED_TRACE(own.text);
        EXPECT_FALSE(Load(own.text));
        ASSERT_THAT(findings, SizeIs(1));
        EXPECT_EQ(findings[0].severity, Severity::Error);
        EXPECT_EQ(findings[0].file, path);
        EXPECT_EQ(findings[0].line, own.line);
        EXPECT_THAT(findings[0].message, HasSubstr(own.message));
        EXPECT_EQ(findings[0].failures, EveryOperation());
        EXPECT_NE(findings[0].fix, "");
    }
}

TEST_F(ConfigurationXml, WhatTheParserPassesIsAWarning)
{
    using namespace std::string_view_literals;
    const struct
    {
        std::string_view text;
        int line;
        std::string_view message;
    } cases[]{{"<a/>\n\0old"sv, 2, "zero byte at 0x0005"},
              {"<a>\n\xE4</a>", 2, "not valid UTF-8"},
              {"<a>\n\xC3</a>", 2, "not valid UTF-8"},
              {"<a/>\n<b/>", 2, "<b> is a second element outside of <a>."}};
    for (const auto& own : cases)
    {
        SCOPED_TRACE(own.message);
        EXPECT_TRUE(Load(own.text));
        ASSERT_THAT(findings, SizeIs(2));
        const Finding& warning = findings[findings[0].severity == Severity::Good ? 1 : 0];
        EXPECT_EQ(warning.severity, Severity::Warning);
        EXPECT_EQ(warning.line, own.line);
        EXPECT_THAT(warning.message, HasSubstr(own.message));
        EXPECT_TRUE(warning.failures.empty());
    }
}

TEST_F(ConfigurationXml, LettersOfEveryLengthAreUtf8)
{
    EXPECT_TRUE(Load("<a>a\xC3\xA4\xE6\x97\xA5\xF0\x9F\x8E\xA4</a>"));
    EXPECT_THAT(findings, SizeIs(1));
}

TEST_F(ConfigurationXml, AMissingFileHasNoLine)
{
    EXPECT_FALSE(LoadConfigurationXml(PathFromUtf8(folder.Path() + "/none.xml"), &document, &findings));
    ASSERT_THAT(findings, SizeIs(1));
    EXPECT_EQ(findings[0].line, 0);
    EXPECT_EQ(findings[0].message, "There is no such file.");
    EXPECT_EQ(findings[0].failures, EveryOperation());
}

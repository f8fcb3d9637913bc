#include "library/configuration/LanguageElement.h"

#include "tests/support/RecordingLogger.h"
#include "tests/support/TestConfiguration.h"

#include <gmock/gmock.h>

namespace LanguageElementTests
{

using testing::ElementsAre;
using testing::IsEmpty;

constexpr LookupLines Lines{"[Op] Load %s, %s.", "[Op] Root.", "[Op] Directory.", "[Op] Id %d."};
constexpr FileElement Model{"model", "[Op] Element.", "[Op] File name."};

class LanguageElement : public testing::Test
{
protected:
    HRESULT LookUp(uint16_t languageId)
    {
        return LookUpLanguage(configuration.Path(), languageId, Lines, &logger, &found);
    }
    HRESULT GetModelName(const std::string& content)
    {
        found.document.Parse(("<language>" + content + "</language>").c_str());
        found.element = found.document.FirstChildElement();
        return GetFileName(found, Model, &logger, &fileName);
    }

    TestConfiguration configuration;
    RecordingLogger logger;
    LanguageEntry found;
    std::string fileName = "old";
};

struct IdCase
{
    const char* description;
    const char* attribute;
    tinyxml2::XMLError status;
    unsigned int id;
};

TEST_F(LanguageElement, IdIsAnUnsignedNumber)
{
    using namespace tinyxml2;
    const IdCase cases[]{{"decimal", "id='1033'", XML_SUCCESS, 1033},
                         {"zero", "id='0'", XML_SUCCESS, 0},
                         {"more than 16 bits", "id='66569'", XML_SUCCESS, 66569},
                         {"32 bits", "id='4294967295'", XML_SUCCESS, 4294967295},
                         {"hexadecimal", "id='0x409'", XML_SUCCESS, 1033},
                         {"hexadecimal, upper case", "id='0X409'", XML_SUCCESS, 1033},
                         {"leading zeros are decimal", "id='01033'", XML_SUCCESS, 1033},
                         {"a sign", "id='+1033'", XML_SUCCESS, 1033},
                         {"negative wraps", "id='-1'", XML_SUCCESS, 4294967295},
                         {"after blanks", "id=' \t\n1033'", XML_SUCCESS, 1033},
                         {"before blanks", "id='1033 '", XML_SUCCESS, 1033},
                         {"before letters", "id='1033abc'", XML_SUCCESS, 1033},
                         {"before a fraction", "id='1033.9'", XML_SUCCESS, 1033},
                         {"before another number", "id='1033 1040'", XML_SUCCESS, 1033},
                         {"a character reference", "id='&#49;033'", XML_SUCCESS, 1033},
                         {"empty", "id=''", XML_WRONG_ATTRIBUTE_TYPE, 4711},
                         {"blanks", "id='  '", XML_WRONG_ATTRIBUTE_TYPE, 4711},
                         {"letters", "id='abc'", XML_WRONG_ATTRIBUTE_TYPE, 4711},
                         {"a sign alone", "id='-'", XML_WRONG_ATTRIBUTE_TYPE, 4711},
                         {"full-width digits", "id='\xef\xbc\x91\xef\xbc\x90'", XML_WRONG_ATTRIBUTE_TYPE, 4711},
                         {"missing", "", XML_NO_ATTRIBUTE, 4711},
                         {"another case of letters", "Id='1033'", XML_NO_ATTRIBUTE, 4711}};
    for (const IdCase& variant : cases)
    {
        SCOPED_TRACE(variant.description);
        ASSERT_EQ(found.document.Parse(("<language " + std::string(variant.attribute) + "/>").c_str()), XML_SUCCESS);
        unsigned int id = 4711;
        EXPECT_EQ(QueryLanguageId(*found.document.FirstChildElement(), &id), variant.status);
        EXPECT_EQ(id, variant.id);
    }
}

TEST_F(LanguageElement, IdOutside32BitsIsAcceptedAndWhatItBecomesIsTheRuntimesChoice)
{
    found.document.Parse("<language id='4294967296'/>");
    unsigned int id = 4711;
    EXPECT_EQ(QueryLanguageId(*found.document.FirstChildElement(), &id), tinyxml2::XML_SUCCESS);
    EXPECT_THAT(id, testing::AnyOf(0U, 4294967295U)); // wraps or saturates
}

TEST_F(LanguageElement, LookupGivesDirectoryAndElement)
{
    EXPECT_EQ(LookUp(1040), S_OK);
    EXPECT_EQ(found.directory, configuration.Directory());
    ASSERT_NE(found.element, nullptr);
    EXPECT_STREQ(found.element->Attribute("qualityThreshold"), "20");
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_F(LanguageElement, FirstElementOfAnIdCounts)
{
    configuration.WriteLanguages("<first id='1033'/><second id='1033'/>");
    EXPECT_EQ(LookUp(1033), S_OK);
    ASSERT_NE(found.element, nullptr);
    EXPECT_STREQ(found.element->Name(), "first");
}

TEST_F(LanguageElement, InvalidIdBehindTheLanguageIsNotLookedAt)
{
    configuration.WriteLanguages("<a id='1033'/><b id='abc'/>");
    EXPECT_EQ(LookUp(1033), S_OK);
    EXPECT_NE(found.element, nullptr);
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_F(LanguageElement, UnknownLanguageIsNoFailure)
{
    tinyxml2::XMLDocument other;
    found.element = other.NewElement("mark");
    EXPECT_EQ(LookUp(1031), S_OK);
    EXPECT_EQ(found.element, nullptr);
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_F(LanguageElement, WholeIdCounts)
{
    configuration.WriteLanguages("<a id='66569'/><a id='-64503'/>"); // both end in 0x0409
    EXPECT_EQ(LookUp(1033), S_OK);
    EXPECT_EQ(found.element, nullptr);
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_F(LanguageElement, LanguagesFurtherDownAreNotFound)
{
    configuration.WriteLanguages("<group id='1'><a id='1033'/></group>");
    EXPECT_EQ(LookUp(1033), S_OK);
    EXPECT_EQ(found.element, nullptr);
}

struct LookupFailure
{
    const char* description;
    std::string xml;
    LogLine line;
};

TEST_F(LanguageElement, LookupFailuresAreLogged)
{
    const std::string path = configuration.Path();
    const LookupFailure cases[]{
        {"empty file", "", LogFormat(2, 1, "[Op] Load " + path + ", XML_ERROR_EMPTY_DOCUMENT.")},
        {"no root", "<!-- -->", LogFormat(2, 1, "[Op] Root.")},
        {"no directory, though the language is there", "<r><a id='1033'/></r>", Log(2, 1, "[Op] Directory.")},
        {"the directory is looked at before the ids", "<r><a/><a id='1033'/></r>", Log(2, 1, "[Op] Directory.")},
        {"a missing id ahead", "<r directory='d'><a/><a id='1033'/></r>", LogFormat(2, 1, "[Op] Id 1.")},
        {"an invalid id ahead", "<r directory='d'><a id='abc'/><a id='1033'/></r>", LogFormat(2, 1, "[Op] Id 2.")},
        {"an invalid id behind others", "<r directory='d'><a id='1'/><a id=''/></r>", LogFormat(2, 1, "[Op] Id 2.")}};
    for (const LookupFailure& variant : cases)
    {
        SCOPED_TRACE(variant.description);
        configuration.WriteXml(variant.xml);
        EXPECT_EQ(LookUp(1033), E_FAIL);
        EXPECT_THAT(logger.Take(), ElementsAre(variant.line));
    }
}

TEST_F(LanguageElement, FileNameIsTheTextOfTheFirstChildOfThatName)
{
    EXPECT_EQ(GetModelName("<other>o.bin</other><model>a.bin</model><model>b.bin</model>"), S_OK);
    EXPECT_EQ(fileName, "a.bin");
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_F(LanguageElement, FileNameIsTakenAsTheParserGivesIt)
{
    EXPECT_EQ(GetModelName("<model> a &amp; b.bin </model>"), S_OK);
    EXPECT_EQ(fileName, " a & b.bin ");
    EXPECT_EQ(GetModelName("<model><![CDATA[<a>.bin]]></model>"), S_OK);
    EXPECT_EQ(fileName, "<a>.bin");
    EXPECT_EQ(GetModelName("<model>a.bin<more>b</more></model>"), S_OK);
    EXPECT_EQ(fileName, "a.bin");
}

TEST_F(LanguageElement, MissingFileElementFailsAndLeavesTheName)
{
    for (const char* content : {"", "<Model>a.bin</Model>", "<other><model>a.bin</model></other>"})
    {
        SCOPED_TRACE(content);
        EXPECT_EQ(GetModelName(content), E_FAIL);
        EXPECT_EQ(fileName, "old");
        EXPECT_THAT(logger.Take(), ElementsAre(Log(2, 1, "[Op] Element.")));
    }
}

TEST_F(LanguageElement, FileElementWithoutTextFailsAndLeavesTheName)
{
    for (const char* content : {"<model/>", "<model></model>", "<model>  </model>", "<model><name>a.bin</name></model>",
                                "<model/><model>a.bin</model>"})
    {
        SCOPED_TRACE(content);
        EXPECT_EQ(GetModelName(content), E_FAIL);
        EXPECT_EQ(fileName, "old");
        EXPECT_THAT(logger.Take(), ElementsAre(Log(2, 1, "[Op] File name.")));
    }
}

} // namespace LanguageElementTests

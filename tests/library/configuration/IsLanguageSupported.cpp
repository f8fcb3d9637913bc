#include "tests/support/ReaderTest.h"

#include <gmock/gmock.h>

namespace IsLanguageSupportedTests
{

using testing::IsEmpty;

class IsLanguageSupported : public ReaderTest
{
protected:
    bool Supported(uint16_t languageId)
    {
        bool supported = false;
        EXPECT_EQ(reader.IsLanguageSupported(languageId, &supported), S_OK);
        return supported;
    }
};

TEST_F(IsLanguageSupported, EveryLanguageOfTheFileIs)
{
    EXPECT_TRUE(Supported(1033));
    EXPECT_TRUE(Supported(1040));
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_F(IsLanguageSupported, AnyOtherIsNot)
{
    EXPECT_FALSE(Supported(1031));
    EXPECT_FALSE(Supported(0));
    EXPECT_FALSE(Supported(65535));
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_F(IsLanguageSupported, ElementsWithoutAValidIdArePassedOver)
{
    struct Case
    {
        const char* description;
        const char* languages;
        bool supported;
    };
    const Case cases[]{
        {"missing ahead", "<a/><a id='1033'/>", true},          {"empty ahead", "<a id=''/><a id='1033'/>", true},
        {"letters ahead", "<a id='abc'/><a id='1033'/>", true}, {"only invalid ones", "<a/><a id=''/><a id='abc'/>", false},
        {"twice", "<a id='1033'/><a id='1033'/>", true},        {"only in a child", "<a><b id='1033'/></a>", false},
        {"the whole value counts", "<a id='66569'/>", false},   {"no languages", "", false}};
    for (const Case& variant : cases)
    {
        SCOPED_TRACE(variant.description);
        configuration.WriteLanguages(variant.languages);
        bool supported = !variant.supported;
        EXPECT_EQ(reader.IsLanguageSupported(1033, &supported), S_OK);
        EXPECT_EQ(supported, variant.supported);
    }
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_F(IsLanguageSupported, InvalidIdIsNotLanguageZero)
{
    configuration.WriteLanguages("<a/><a id='abc'/>");
    EXPECT_FALSE(Supported(0));
    configuration.WriteLanguages("<a id='0'/>");
    EXPECT_TRUE(Supported(0));
}

TEST_F(IsLanguageSupported, DocumentWithoutElementSupportsNone)
{
    configuration.WriteXml("<!-- no element -->");
    bool supported = true;
    EXPECT_EQ(reader.IsLanguageSupported(1033, &supported), S_OK);
    EXPECT_FALSE(supported);
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_F(IsLanguageSupported, UnreadableFileFailsAndLeavesTheAnswer)
{
    configuration.WriteXml("<keywords></language>");
    bool supported = false; // What a refusal does to true is seen where all operations are.
    EXPECT_EQ(reader.IsLanguageSupported(1033, &supported), E_FAIL);
    EXPECT_FALSE(supported);
}

} // namespace IsLanguageSupportedTests

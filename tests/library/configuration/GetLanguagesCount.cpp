#include "tests/support/ReaderTest.h"

#include <gmock/gmock.h>

namespace GetLanguagesCountTests
{

using testing::IsEmpty;

using GetLanguagesCount = ReaderTest;

TEST_F(GetLanguagesCount, CountsTheLanguageElements)
{
    uint32_t count = 4711;
    EXPECT_EQ(reader.GetLanguagesCount(&count), S_OK);
    EXPECT_EQ(count, 2U);
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_F(GetLanguagesCount, OnlyChildElementsOfTheRootCount)
{
    struct Case
    {
        const char* description;
        const char* content;
        uint32_t count;
    };
    const Case cases[]{{"none", "", 0},
                       {"any name, no attribute", "<a/><b id=''/><c id='abc'/>", 3},
                       {"the same id twice", "<a id='1033'/><a id='1033'/>", 2},
                       {"text, comments and unknown nodes are no elements", "text<!-- <a/> --><![CDATA[<a/>]]><a/><!x>", 1},
                       {"elements further down", "<a><b/><b/></a>", 1}};
    for (const Case& variant : cases)
    {
        SCOPED_TRACE(variant.description);
        configuration.WriteLanguages(variant.content);
        uint32_t count = 4711;
        EXPECT_EQ(reader.GetLanguagesCount(&count), S_OK);
        EXPECT_EQ(count, variant.count);
    }
    EXPECT_THAT(logger.lines, IsEmpty());
}

TEST_F(GetLanguagesCount, NeedsNoRootAttribute)
{
    configuration.WriteXml("<keywords><a/></keywords>");
    uint32_t count = 4711;
    EXPECT_EQ(reader.GetLanguagesCount(&count), S_OK);
    EXPECT_EQ(count, 1U);
}

} // namespace GetLanguagesCountTests

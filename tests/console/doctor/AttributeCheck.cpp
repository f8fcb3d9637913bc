#include "console/doctor/AttributeCheck.h"

#include <gmock/gmock.h>

using namespace velox::console;
using testing::HasSubstr;

namespace
{

/// An element in line 2 with an attribute in line 3.
class AttributeCheck : public testing::Test
{
protected:
    const tinyxml2::XMLElement& Element(const std::string& value)
    {
        EXPECT_EQ(document.Parse(("\n<a\nid=\"" + value + "\"/>").c_str()), tinyxml2::XML_SUCCESS);
        return *document.FirstChildElement();
    }
    Findings CheckId(const std::string& text)
    {
        Findings findings;
        CheckNumber(*Element(text).FindAttribute("id"), "The id", 7, {"c.xml", &findings});
        return findings;
    }

    tinyxml2::XMLDocument document;
};

} // namespace

TEST_F(AttributeCheck, TellsWhatIsUnusualAboutANumber)
{
    const struct
    {
        std::string text;
        Tone tone;
        std::string effect;
    } cases[]{
        {"1033abc", Tone::Warning, "The library takes 7 and ignores \"abc\"."},
        {"0.5", Tone::Warning, "The library takes 7 and ignores \".5\"."},
        {"0x409", Tone::Note, "The library takes it for 7."},
        {"0X409 x", Tone::Warning, "The library takes 7 and ignores \"x\"."},
        {"4294967296", Tone::Warning, "The number is beyond 32 bits, and its value depends on the C runtime."},
        {"99999999999999999999999", Tone::Warning, "The number is beyond 32 bits, and its value depends on the C runtime."},
    };
    for (const auto& own : cases)
    {
        SCOPED_TRACE(own.text);
        const Findings findings = CheckId(own.text);
        ASSERT_EQ(findings.size(), 1U);
        EXPECT_EQ(findings[0].tone, own.tone);
        EXPECT_EQ(findings[0].line, 3);
        EXPECT_EQ(findings[0].message, "The id is written \"" + own.text + "\".");
        EXPECT_EQ(findings[0].effect, own.effect);
        EXPECT_NE(findings[0].fix, "");
    }
}

TEST_F(AttributeCheck, SaysNothingOfANumberAlone)
{
    for (const char* text : {"1033", "  1033 ", "-1", "+7", "4294967295"})
    {
        EXPECT_THAT(CheckId(text), testing::IsEmpty()) << text;
    }
}

TEST_F(AttributeCheck, AttributesThatTheLibraryIgnoresAreWarnedOf)
{
    Findings findings;
    CheckAttributeNames(Element("7"), {"id"}, {"c.xml", &findings});
    EXPECT_THAT(findings, testing::IsEmpty());
    CheckAttributeNames(Element("7"), {"Id"}, {"c.xml", &findings, 1033});
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings[0].message, "Language 1033: id is no attribute that the library knows.");
    EXPECT_EQ(findings[0].line, 3);
}

TEST_F(AttributeCheck, AnAttributeThatIsNotThereIsInItsElementsLine)
{
    EXPECT_EQ(LineOf(Element("7"), "id"), 3);
    EXPECT_EQ(LineOf(Element("7"), "name"), 2);
}

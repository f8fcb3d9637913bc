#include "console/doctor/ConfigurationCheck.h"

#include "tests/console/support/DoctorProject.h"

#include <gmock/gmock.h>

namespace LanguageCheckTests
{

using namespace velox::console;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr uint16_t Language = 1033;

/// The first language of a project, without the rest of its configuration.
class LanguageCheck : public testing::Test
{
protected:
    /// @return how many files the language names
    std::size_t Check(bool filesReachable = true)
    {
        EXPECT_EQ(document.Parse(project.Xml().c_str()), tinyxml2::XML_SUCCESS);
        const tinyxml2::XMLElement& element = *document.FirstChildElement()->FirstChildElement();
        velox::console::ConfigurationCheck check{{}, true, project.Directory(), filesReachable};
        CheckLanguage(element, Language, "c.xml", &check);
        findings = std::move(check.findings);
        return check.files.size();
    }

    /// An element in line 2 with an attribute in line 3.
    const tinyxml2::XMLElement& Element(const std::string& value)
    {
        EXPECT_EQ(document.Parse(("\n<a\nid=\"" + value + "\"/>").c_str()), tinyxml2::XML_SUCCESS);
        return *document.FirstChildElement();
    }
    Findings CheckId(const std::string& text)
    {
        Findings found;
        CheckNumber(*Element(text).FindAttribute("id"), "The id", 7, {"c.xml", &found});
        return found;
    }

    DoctorProject project;
    tinyxml2::XMLDocument document;
    Findings findings;
};

TEST_F(LanguageCheck, NothingIsWrongWithAWholeLanguage)
{
    EXPECT_EQ(Check(), 6U);
    EXPECT_THAT(Unpleasant(findings), IsEmpty());
    EXPECT_THAT(findings, SizeIs(7)); // the quality, four models and two thresholds
}

TEST_F(LanguageCheck, FilesAreCountedOnlyWhereTheyAreNamed)
{
    project.Replace("<fwBlob>fw_1033.bin</fwBlob>", "");
    project.Replace(">zn_1033.bin<", "><");
    EXPECT_EQ(Check(), 4U);
    EXPECT_THAT(Unpleasant(findings), SizeIs(2));
}

TEST_F(LanguageCheck, FilesAreNotLookedForWhereTheFolderIsMissing)
{
    project.RemoveModel("am_1033.bin");
    EXPECT_EQ(Check(false), 6U);
    EXPECT_THAT(Unpleasant(findings), IsEmpty());
    Check(true);
    ASSERT_THAT(Unpleasant(findings), SizeIs(1));
    EXPECT_THAT(Unpleasant(findings)[0].message, HasSubstr("Language 1033: the acoustic model"));
    EXPECT_EQ(Unpleasant(findings)[0].failures, FailuresOf({Operation::Verification, Operation::Training}, Language));
}

TEST_F(LanguageCheck, AWholePathIsNoFileName)
{
    project.Replace(">am_1033.bin<", ">C:\\am_1033.bin<");
    Check(false);
    ASSERT_THAT(Unpleasant(findings), SizeIs(1));
    EXPECT_THAT(Unpleasant(findings)[0].message, HasSubstr("holds a whole path"));
}

TEST_F(LanguageCheck, AnElementInOtherLettersIsNamedAsItShouldBe)
{
    project.Replace("<fwBlob>fw_1033.bin</fwBlob>", "<FWBLOB>fw_1033.bin</FWBLOB>");
    Check();
    ASSERT_THAT(Unpleasant(findings), SizeIs(2));
    EXPECT_EQ(Unpleasant(findings)[1].fix, "Write <fwBlob>: upper and lower case count.");
}

TEST_F(LanguageCheck, TellsWhatIsUnusualAboutANumber)
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
        const Findings found = CheckId(own.text);
        ASSERT_EQ(found.size(), 1U);
        EXPECT_EQ(found[0].tone, own.tone);
        EXPECT_EQ(found[0].line, 3);
        EXPECT_EQ(found[0].message, "The id is written \"" + own.text + "\".");
        EXPECT_EQ(found[0].effect, own.effect);
        EXPECT_NE(found[0].fix, "");
    }
}

TEST_F(LanguageCheck, SaysNothingOfANumberAlone)
{
    for (const char* text : {"1033", "  1033 ", "-1", "+7", "4294967295"})
    {
        EXPECT_THAT(CheckId(text), testing::IsEmpty()) << text;
    }
}

TEST_F(LanguageCheck, AttributesThatTheLibraryIgnoresAreWarnedOf)
{
    CheckAttributeNames(Element("7"), {"id"}, {"c.xml", &findings});
    EXPECT_THAT(findings, testing::IsEmpty());
    CheckAttributeNames(Element("7"), {"Id"}, {"c.xml", &findings, 1033});
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings[0].message, "Language 1033: id is no attribute that the library knows.");
    EXPECT_EQ(findings[0].line, 3);
}

TEST_F(LanguageCheck, AnAttributeThatIsNotThereIsInItsElementsLine)
{
    EXPECT_EQ(LineOf(Element("7"), "id"), 3);
    EXPECT_EQ(LineOf(Element("7"), "name"), 2);
}

} // namespace LanguageCheckTests

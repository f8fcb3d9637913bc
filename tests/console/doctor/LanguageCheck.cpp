#include "console/doctor/ConfigurationCheck.h"

#include "tests/console/support/DoctorProject.h"

#include <gmock/gmock.h>

using namespace velox::console;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace
{

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

    DoctorProject project;
    tinyxml2::XMLDocument document;
    Findings findings;
};

} // namespace

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

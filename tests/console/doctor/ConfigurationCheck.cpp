#include "console/doctor/ConfigurationCheck.h"

#include "tests/console/support/DoctorDefects.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace ConfigurationCheckTests
{

using namespace velox::console;

/// What fails for 1033, in the order of the operations.
std::vector<Operation> FailuresOf1033(const Findings& findings)
{
    std::vector<Operation> failing;
    for (const Operation operation :
         {Operation::Capabilities, Operation::Verification, Operation::Training, Operation::Arming, Operation::Parsing})
    {
        const bool fails = std::any_of(findings.begin(), findings.end(), [&](const Finding& finding) {
            return std::any_of(finding.failures.begin(), finding.failures.end(), [&](const Failure& failure) {
                return failure.operation == operation && (!failure.language || *failure.language == 1033);
            });
        });
        if (fails)
        {
            failing.push_back(operation);
        }
    }
    return failing;
}

/// The first finding is the defect, with its place, what it leads to and what to do; and what fails is told.
void ExpectFound(const DoctorDefect& defect)
{
    const DoctorProject project;
    defect.damage(project);
    const Findings findings = Unpleasant(project.Check().findings);
    ASSERT_FALSE(findings.empty());
    EXPECT_EQ(findings[0].tone, defect.tone) << findings[0].message;
    EXPECT_THAT(findings[0].message, testing::HasSubstr(defect.message));
    EXPECT_EQ(findings[0].line, defect.line);
    const bool tellsWhat = !findings[0].effect.empty() || !findings[0].failures.empty();
    EXPECT_TRUE(tellsWhat) << "what does it lead to?";
    const bool fixed = !findings[0].fix.empty() || findings[0].tone == Tone::Note;
    EXPECT_TRUE(fixed) << "what to do?";
    EXPECT_EQ(FailuresOf1033(findings), defect.fails);
}

TEST(ConfigurationCheck, NothingIsWrongWithAGoodConfiguration)
{
    const DoctorProject project;
    const velox::console::ConfigurationCheck check = project.Check();
    for (const Finding& finding : Unpleasant(check.findings))
    {
        ADD_FAILURE() << finding.message;
    }
    EXPECT_TRUE(check.usable);
    EXPECT_THAT(check.languages, testing::ElementsAre(1033, 1040));
    EXPECT_EQ(check.files.size(), 13U) << "constraints and six of each language";
}

TEST(ConfigurationCheck, EveryDefectIsFoundWithItsPlaceAndWhatFails)
{
    for (const DoctorDefect& defect : DoctorDefects())
    {
        SCOPED_TRACE(defect.name);
        ExpectFound(defect);
    }
}

TEST(ConfigurationCheck, MissingFileMakesEverythingFail)
{
    const velox::console::ConfigurationCheck check = CheckConfiguration("no such file");
    EXPECT_FALSE(check.usable);
    ASSERT_EQ(check.findings.size(), 1U);
    EXPECT_EQ(check.findings[0].message, "There is no such file.");
    EXPECT_EQ(check.findings[0].failures.size(), 5U);
}

TEST(ConfigurationCheck, LanguagesBehindAnInvalidIdFailByName)
{
    const DoctorProject project;
    project.Replace("id=\"1033\"", "id=\"english\"");
    const Findings findings = Unpleasant(project.Check().findings);
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_THAT(findings[0].effect, testing::HasSubstr("cannot be reached: 1040."));
    EXPECT_THAT(findings[0].failures, testing::Contains(Failure{Operation::Arming, 1040}));
}

TEST(ConfigurationCheck, SecondElementOfALanguageIsNotLookedInto)
{
    const DoctorProject project;
    project.Replace("id=\"1040\"", "id=\"1033\"");
    project.RemoveModel("kp_1040.bin");
    EXPECT_EQ(Unpleasant(project.Check().findings).size(), 1U);
}

TEST(ConfigurationCheck, PathsThatAreNotWholeAreWarnedOf)
{
    const DoctorProject project;
    project.Replace("directory=\"" + project.Directory(), "directory=\".");
    const Findings findings = Unpleasant(project.Check().findings);
    EXPECT_THAT(findings[0].message, testing::HasSubstr("is no whole path"));
    EXPECT_EQ(findings[0].tone, Tone::Warning);
}

TEST(ConfigurationCheck, SeparatorAtTheEndOfTheDirectoryIsNoted)
{
    const DoctorProject project;
    project.Replace("/models\"", "/models/\"");
    const Findings findings = Unpleasant(project.Check().findings);
    EXPECT_THAT(findings[0].message, testing::HasSubstr("ends in a separator"));
}

TEST(ConfigurationCheck, NameBeyondAsciiThatIsNotFoundTellsOfTheCodePage)
{
    const DoctorProject project;
    project.Replace(">fw_1033.bin<", ">f\xC3\xBC_1033.bin<");
    const Findings findings = Unpleasant(project.Check().findings);
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_THAT(findings[0].message, testing::HasSubstr("code page"));
}

TEST(ConfigurationCheck, LettersOfEveryLengthAreUtf8)
{
    const DoctorProject project;
    project.Replace("<keywords ", "<!-- a\xC3\xA4\xE6\x97\xA5\xF0\x9F\x8E\xA4 -->\n<keywords ");
    EXPECT_THAT(Unpleasant(project.Check().findings), testing::IsEmpty());
    project.Replace("\xC3\xA4", "\xC0\x80");
    ASSERT_EQ(Unpleasant(project.Check().findings).size(), 1U);
    EXPECT_THAT(Unpleasant(project.Check().findings)[0].message, testing::HasSubstr("not valid UTF-8"));
}

} // namespace ConfigurationCheckTests

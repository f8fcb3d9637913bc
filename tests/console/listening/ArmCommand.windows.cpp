#include "console/listening/ArmCommand.h"

#include "console/hosting/Detector.h"
#include "console/hosting/UserModelStream.h"
#include "console/text/Utf8Path.h"
#include "console/text/WriteWhole.h"
#include "tests/console/support/ProgramRun.h"
#include "tests/console/support/ToneProject.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <filesystem>

namespace
{

using namespace velox::console;
using Json = nlohmann::json;
using testing::HasSubstr;

constexpr const char* OtherDetector = "{01020304-0506-0708-090A-0B0C0D0E0F10}";

/// The program as a process.
class ArmCommand : public testing::Test
{
protected:
    ProgramRun Run(const std::vector<std::string>& more) const
    {
        std::vector<std::string> arguments{"arm", "--config", project.Configuration()};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RunVeloxKws(arguments);
    }

    bool Written() const
    {
        return std::filesystem::exists(project.File("pattern.bin"));
    }

    ToneProject project;
};

TEST_F(ArmCommand, WritesThePatternAsTheLibraryReturnsIt)
{
    const ProgramRun run = Run({"0x409", "--detector-id", OtherDetector, "--out", project.File("pattern.bin")});
    ASSERT_EQ(run.exitCode, 0) << run.errors;
    Detector detector({project.Configuration(), OtherDetector}, {});
    EXPECT_EQ(project.Read("pattern.bin"), detector.Arm(EmptyStream().get(), ToneProject::English).pattern);
    EXPECT_THAT(run.output, HasSubstr("everybody's"));
    EXPECT_THAT(run.output, HasSubstr("70 (preDefinedKpdSensitivity)"));
}

TEST_F(ArmCommand, AUsersModelIsArmedWhole)
{
    const std::string model = "VWOV and the rest of a user's model";
    project.Write("user.vwov", model);
    const ProgramRun run = Run({"en-US", "--model", project.File("user.vwov"), "--out", project.File("pattern.bin"), "--json"});
    ASSERT_EQ(run.exitCode, 0) << run.errors;
    const std::vector<uint8_t> pattern = project.Read("pattern.bin");
    EXPECT_EQ(std::string(pattern.begin() + 44, pattern.end()), model);
    const Json result = Json::parse(run.output)["results"].at(0);
    EXPECT_EQ(result["model"], "user");
    EXPECT_EQ(result["threshold"], 60.0);
}

TEST_F(ArmCommand, AFileThatHoldsNoUserModelIsRefused)
{
    project.Write("other.bin", std::string("RIFF"));
    const ProgramRun run = Run({"en-US", "--model", project.File("other.bin"), "--out", project.File("pattern.bin")});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_THAT(run.errors, HasSubstr("holds no user model"));
    EXPECT_FALSE(Written());
}

TEST_F(ArmCommand, AModelThatIsNotThereIsBadInput)
{
    const ProgramRun run = Run({"en-US", "--model", project.File("none.vwov"), "--out", project.File("pattern.bin")});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_THAT(run.errors, HasSubstr("none.vwov cannot be opened"));
    EXPECT_FALSE(Written());
}

TEST_F(ArmCommand, RefusesWhatIsNoLanguageOrNoGuid)
{
    EXPECT_EQ(Run({"english", "--out", project.File("pattern.bin")}).exitCode, 2);
    EXPECT_EQ(Run({"en-US", "--detector-id", "{1234}", "--out", project.File("pattern.bin")}).exitCode, 2);
    EXPECT_FALSE(Written());
}

TEST_F(ArmCommand, ALanguageThatIsNotConfiguredIsABadConfiguration)
{
    const ProgramRun run = Run({"de-DE", "--out", project.File("pattern.bin")});
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_THAT(run.errors, HasSubstr("the language is not in the configuration file"));
}

TEST_F(ArmCommand, AModelThatTheSimulatorRefusesIsArmedWithAWarning)
{
    auto model = project.Read("fw.bin");
    model.back() ^= 1U;
    project.Write("fw.bin", model);
    const ProgramRun run = Run({"en-US", "--out", project.File("pattern.bin")});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.output, HasSubstr("warning: the simulated DSP refuses this block at 0x38, ModelData.checksum"));
    const std::vector<uint8_t> pattern = project.Read("pattern.bin");
    EXPECT_EQ(std::vector<uint8_t>(pattern.begin() + 44, pattern.end()), model);
}

TEST_F(ArmCommand, NoInputAndNoForeignFileIsReplaced)
{
    project.Write("user.vwov", std::string("VWOV and the rest of a user's model"));
    const auto before = project.Read("configuration.xml");
    for (const char* output : {"user.vwov", "configuration.xml", "fw.bin"})
    {
        SCOPED_TRACE(output);
        const ProgramRun run = Run({"en-US", "--model", project.File("user.vwov"), "--out", project.File(output)});
        EXPECT_EQ(run.exitCode, 2);
        EXPECT_THAT(run.errors, HasSubstr("Nothing was changed"));
    }
    EXPECT_EQ(project.Read("configuration.xml"), before);
    project.Write("diary.txt", std::string("today"));
    EXPECT_EQ(Run({"en-US", "--out", project.File("diary.txt")}).exitCode, 2);
    EXPECT_EQ(Run({"en-US", "--out", project.File("pattern.bin")}).exitCode, 0);
    EXPECT_EQ(Run({"en-US", "--out", project.File("pattern.bin")}).exitCode, 0) << "a former pattern is replaced";
}

TEST_F(ArmCommand, NamesMayHoldBlanksAndOtherAlphabets)
{
    const std::string name = "Muster für Łukasz.bin";
    const ProgramRun run = Run({"en-US", "--out", project.File(name)});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.output, HasSubstr(name));
    EXPECT_TRUE(std::filesystem::exists(PathFromUtf8(project.File(name))));
}

} // namespace

// The program's command line, from outside.
#include "tests/console/support/ProgramRun.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

using Json = nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

TEST(main, HelpHasAnExampleForEveryCommand)
{
    const ProgramRun run = RunVeloxKws({"--help"});
    EXPECT_EQ(run.exitCode, 0);
    for (const char* command : {"doctor", "capabilities", "verify", "enroll", "arm", "listen", "inspect"})
    {
        EXPECT_THAT(run.output, HasSubstr(std::string("  velox-kws ") + command));
    }
}

TEST(main, ACommandsHelpTellsItsOptions)
{
    const ProgramRun run = RunVeloxKws({"arm", "--help"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.output, HasSubstr("Usage: velox-kws arm [OPTIONS] LANG"));
    EXPECT_THAT(run.output, HasSubstr("--detector-id"));
    EXPECT_THAT(run.output, HasSubstr("--json"));
}

TEST(main, VersionIsOneLine)
{
    const ProgramRun run = RunVeloxKws({"--version"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, "velox-kws " VELOX_VERSION "\n");
}

TEST(main, AWrongCommandLineIsAUsageError)
{
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{}, {"nothing"}, {"arm"}, {"verify", "en-US"}, {"capabilities", "--unknown"}})
    {
        const ProgramRun run = RunVeloxKws(arguments);
        EXPECT_EQ(run.exitCode, 2);
        EXPECT_EQ(run.output, "");
        EXPECT_THAT(run.errors, StartsWith("error: "));
    }
}

TEST(main, ANameThatBeginsWithASlashIsAFileAndNoOption)
{
    const ProgramRun run = RunVeloxKws({"inspect", "/no such file"});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_THAT(run.errors, testing::HasSubstr("no such file"));
}

TEST(main, AWrongCommandLineWithJsonGivesADocument)
{
    const ProgramRun run = RunVeloxKws({"arm", "--json"});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.errors, "");
    const Json document = Json::parse(run.output);
    EXPECT_EQ(document["exitCode"], 2);
    EXPECT_NE(document["error"]["message"], "");
}
